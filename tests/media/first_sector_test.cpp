#include "media/first_sector.h"

#include <gmock/gmock.h>

namespace omniset::test {
namespace {

void put(DriveSector& sector, std::size_t at, std::string_view text) {
  std::copy(text.begin(), text.end(), sector.begin() + static_cast<std::ptrdiff_t>(at));
}

DriveSector signedSector() {
  DriveSector sector{};
  put(sector, 510, "\x55\xAA");
  return sector;
}

TEST(FirstSectorOfADisk, TellsTheLabelAndTheKindOfAFatVolume) {
  DriveSector sector = signedSector();
  put(sector, 43, "KESTRIX    FAT16   ");
  EXPECT_EQ(readFirstSector(sector).label, "KESTRIX");
  EXPECT_EQ(readFirstSector(sector).contents, "FAT16 volume");
}

TEST(FirstSectorOfADisk, TellsALargeFatVolumeToo) {
  DriveSector sector = signedSector();
  put(sector, 71, "STICK      FAT32   ");
  EXPECT_EQ(readFirstSector(sector).label, "STICK");
  EXPECT_EQ(readFirstSector(sector).contents, "FAT32 volume");
}

TEST(FirstSectorOfADisk, TakesNoNameForNoLabel) {
  DriveSector sector = signedSector();
  put(sector, 43, "NO NAME    FAT12   ");
  EXPECT_EQ(readFirstSector(sector).label, "");
}

TEST(FirstSectorOfADisk, CountsPartitions) {
  DriveSector sector = signedSector();
  sector[446 + 4] = 6;
  EXPECT_EQ(readFirstSector(sector).contents, "1 partition");
  sector[446 + 3 * 16 + 4] = 0x83;
  EXPECT_EQ(readFirstSector(sector).contents, "2 partitions");
}

TEST(FirstSectorOfADisk, SaysWhenItKnowsNothing) {
  EXPECT_EQ(readFirstSector({}).contents, "nothing in its first sector");
  DriveSector sector{};
  sector[100] = 1;
  EXPECT_EQ(readFirstSector(sector).contents, "unknown contents");
  EXPECT_EQ(readFirstSector(signedSector()).contents, "unknown contents");
}

}  // namespace
}  // namespace omniset::test
