// Partitions and formats a disk.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "target/disk/partition_table.h"
#include "target/disk/target_disk.h"

namespace omniset {

// The code is the caller's and outlives what it is handed to.
struct BootCode {
  std::span<const std::uint8_t> disk;  // of the MBR, at most kMbrCodeLength bytes
  std::span<const std::uint8_t>
      volume;  // from byte 62 of the boot sector, at most kVolumeCodeLength
};

// A source of numbers by which disks and volumes are told apart.
using DrawNumber = std::function<std::uint32_t()>;

// Everything on the disk is lost. When the power fails in between, the disk holds what it held
// before or no file system. Raises what the disk raises, and Failure for boot code that is too
// long.
void formatDisk(TargetDisk& disk, const Partition& partition, const BootCode& bootCode,
                const DrawNumber& drawNumber);

}  // namespace omniset
