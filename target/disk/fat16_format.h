// Makes a FAT16 volume in a partition.
#pragma once

#include <cstdint>
#include <span>

#include "target/disk/fat16_plan.h"
#include "target/disk/partition_table.h"
#include "target/disk/target_disk.h"

namespace omniset {

// Marks the place as one where an installation began, and makes sure of it: from here until
// formatFat16() has returned there is no file system, whatever happens to the power. Raises what
// the disk raises.
void beginFormat(TargetDisk& disk, const Partition& partition);

// Writes tables and root folder, and the boot sector when those are on the medium. Raises what the
// disk raises, and Failure for boot code that is too long.
void formatFat16(TargetDisk& disk, const Partition& partition,
                 std::span<const std::uint8_t> bootCode, std::uint32_t serialNumber);

}  // namespace omniset
