// The partition table in the first sector of a disk (MBR), of which only the first entry is used.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "target/disk/target_disk.h"

namespace omniset {

using Sector = std::array<std::uint8_t, kSectorSize>;

constexpr std::size_t kMbrCodeLength = 440;
constexpr std::uint64_t kSmallestDisk = 4 * 2048;  // in sectors

// In sectors.
struct Partition {
  std::uint32_t first = 0;
  std::uint32_t count = 0;
  std::uint8_t type = 0;
};

// Where the one partition of a disk goes: from its first megabyte, on disks under 16 MB from sector
// 63, to the end of the disk, but at most 2 GB. Raises Failure when the disk is too small.
Partition planPartition(const std::string& diskName, std::uint64_t diskSectors);

// The sector with this partition alone, active. The code is at most kMbrCodeLength bytes, or
// Failure is raised.
Sector makeMbr(std::span<const std::uint8_t> bootCode, std::uint32_t diskSignature,
               const Partition& partition);

// The partition of the first entry; none when the sector holds no table, or that entry is empty, of
// an extended partition, or not within the disk.
std::optional<Partition> firstPartition(std::span<const std::uint8_t, kSectorSize> sector,
                                        std::uint64_t diskSectors);

// Are there entries besides the one that firstPartition() returns, whatever they stand for?
bool holdsOtherEntries(std::span<const std::uint8_t, kSectorSize> sector,
                       std::uint64_t diskSectors);

// A type that stands for a FAT volume of whatever kind.
bool isFatType(std::uint8_t type);

}  // namespace omniset
