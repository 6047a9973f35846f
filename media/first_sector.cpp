#include "media/first_sector.h"

#include <algorithm>
#include <string_view>

namespace omniset {

namespace {

constexpr std::size_t kSignature = 510;
constexpr std::size_t kPartitionTable = 446;
constexpr std::size_t kPartitionEntry = 16;
constexpr std::size_t kPartitionType = 4;
constexpr std::string_view kNoName = "NO NAME";

// Where label and type of a FAT volume stand, before FAT32 and in it.
constexpr std::size_t kLabel = 43;
constexpr std::size_t kLabelOfFat32 = 71;
constexpr std::size_t kLabelLength = 11;
constexpr std::size_t kTypeLength = 5;

std::string textAt(const DriveSector& sector, std::size_t at, std::size_t length) {
  std::string text(sector.begin() + at, sector.begin() + at + length);
  return text.erase(text.find_last_not_of(' ') + 1);
}

FirstSector fatVolume(const DriveSector& sector, std::size_t labelAt) {
  std::string label = textAt(sector, labelAt, kLabelLength);
  if (label == kNoName) label.clear();
  return {label, textAt(sector, labelAt + kLabelLength, kTypeLength) + " volume"};
}

bool isFat(const DriveSector& sector, std::size_t labelAt) {
  return textAt(sector, labelAt + kLabelLength, 3) == "FAT";
}

int countPartitions(const DriveSector& sector) {
  int count = 0;
  for (std::size_t at = kPartitionTable; at < kSignature; at += kPartitionEntry) {
    if (sector[at + kPartitionType] != 0) ++count;
  }
  return count;
}

}  // namespace

FirstSector readFirstSector(const DriveSector& sector) {
  if (std::all_of(sector.begin(), sector.end(), [](std::uint8_t byte) { return byte == 0; })) {
    return {{}, "nothing in its first sector"};
  }
  if (sector[kSignature] != 0x55 || sector[kSignature + 1] != 0xAA) return {{}, "unknown contents"};
  if (isFat(sector, kLabel)) return fatVolume(sector, kLabel);
  if (isFat(sector, kLabelOfFat32)) return fatVolume(sector, kLabelOfFat32);
  const int partitions = countPartitions(sector);
  if (partitions == 0) return {{}, "unknown contents"};
  return {{}, std::to_string(partitions) + (partitions == 1 ? " partition" : " partitions")};
}

}  // namespace omniset
