// The first sector of a FAT volume, and what stands there while a disk is being formatted.
#pragma once

#include <cstdint>
#include <span>

#include "target/disk/fat16_plan.h"
#include "target/disk/partition_table.h"

namespace omniset {

constexpr std::size_t kVolumeCodeLength = 448;

// The code is at most kVolumeCodeLength bytes, or Failure is raised; it starts at byte 62, where
// the jump in the first bytes leads.
Sector makeFat16BootSector(std::span<const std::uint8_t> bootCode, const Fat16Plan& plan,
                           std::uint32_t hiddenSectors, std::uint32_t serialNumber);

// Stands in the place of the boot sector while the volume is no file system yet.
Sector makeBegunSector();

// Whether there may be a FAT volume of whatever kind behind the sector.
bool looksLikeFat(std::span<const std::uint8_t, kSectorSize> sector);

// The sector is one of the two that are made here: an installation began.
bool isOurVolume(std::span<const std::uint8_t, kSectorSize> sector);

}  // namespace omniset
