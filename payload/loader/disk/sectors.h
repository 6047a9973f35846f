// The drive that the PC was started from.
#pragma once

#include <array>
#include <cstdint>

namespace omniset::loader {

inline constexpr std::uint32_t kSectorSize = 512;
using SectorBytes = std::array<std::uint8_t, kSectorSize>;

// Sectors count from the drive's first one. What cannot be read fails the loader.

// To physical memory, where the sectors do not cross a boundary of 64 KB.
void readSectors(std::uint32_t first, std::uint32_t count, std::uint32_t to);
void readSector(std::uint32_t number, SectorBytes& to);

}  // namespace omniset::loader
