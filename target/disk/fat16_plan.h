// How a FAT16 volume divides its sectors.
#pragma once

#include <cstdint>
#include <string_view>

namespace omniset {

constexpr std::uint32_t kFat16ReservedSectors = 1;
constexpr std::uint32_t kFat16Tables = 2;
constexpr std::uint32_t kFat16RootEntries = 512;
constexpr std::uint32_t kFat16RootSectors = kFat16RootEntries / 16;
constexpr std::string_view kFat16Label = "OMNISET    ";

struct Fat16Plan {
  std::uint32_t sectors = 0;  // of the volume: a few less than it was given, where FAT16 ends
  std::uint32_t clusterSectors = 0;
  std::uint32_t tableSectors = 0;  // of one table
  std::uint32_t clusters = 0;
};

// For a volume of this many sectors, from the smallest disk's partition to 2 GB.
Fat16Plan planFat16(std::uint32_t sectors);

}  // namespace omniset
