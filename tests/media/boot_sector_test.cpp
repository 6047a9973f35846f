#include "media/boot_sector.h"

#include <gmock/gmock.h>

#include "tests/fakes/fake_volumes.h"

namespace omniset::test {
namespace {

TEST(BootSector, BeginsWithAJumpToItsCodeAndItsName) {
  EXPECT_EQ(bootSectorTemplate[0], 0xEB);
  EXPECT_EQ(bootSectorTemplate[1], 62 - 2);
  EXPECT_EQ(bootSectorTemplate[2], 0x90);
  EXPECT_EQ(std::string(bootSectorTemplate.begin() + 3, bootSectorTemplate.begin() + 11),
            "SYSLINUX");
}

TEST(BootSector, SaysWhenItCannotBoot) {
  const std::string text(bootSectorTemplate.begin(), bootSectorTemplate.end());
  EXPECT_THAT(text, ::testing::HasSubstr("Boot failed"));
  EXPECT_THAT(text, ::testing::HasSubstr("LDLINUX SYS"));
}

// Some BIOSes take the disk's geometry from what looks like a partition.
TEST(BootSector, HoldsNothingWhereAPartitionTableWouldBe) {
  const DriveSector& sector = bootSectorTemplate;
  EXPECT_TRUE(std::all_of(sector.begin() + 0x1BE, sector.begin() + 0x1FE,
                          [](std::uint8_t byte) { return byte == 0; }));
}

TEST(BootSector, KeepsTheParameterBlockAndTheSignatureOfTheFormat) {
  FakeVolumes volumes;
  volumes.drives['E'].firstSector = formattedSector(1);
  const auto volume = volumes.openVolume('E');
  const DriveSector written = installBootSector(*volume);
  const DriveSector before = formattedSector(1);
  const DriveSector& sector = volumes.drives['E'].firstSector;
  EXPECT_EQ(sector, written);
  for (std::size_t i = 0; i < sector.size(); ++i) {
    const bool isFormats = (i >= 11 && i <= 61) || i >= 510;
    EXPECT_EQ(sector[i], isFormats ? before[i] : bootSectorTemplate[i]) << "byte " << i;
  }
}

}  // namespace
}  // namespace omniset::test
