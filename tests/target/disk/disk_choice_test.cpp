#include "target/disk/disk_choice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disk_fixture.h"
#include "target/disk/fat_boot_sector.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct DiskChoice : ::testing::Test {
  ~DiskChoice() override { EXPECT_THAT(disks.faults.violations, IsEmpty()); }

  std::string choose(bool bootedFromMedium = false) {
    return chooseDisk(disks, bootedFromMedium,
                      [this](const std::string& sentence) { said.push_back(sentence); })
        ->name();
  }

  // A volume of another maker, with these files.
  void makeVolume(FakeDisk& disk, std::uint64_t first, const Files& files) {
    Sector sector = makeFat16BootSector({}, planFat16(20000), static_cast<std::uint32_t>(first), 1);
    std::fill_n(sector.begin() + 3, 8, std::uint8_t{' '});
    if (first > 0)
      disk.medium.writeSector(0, makeMbr({}, 1, {static_cast<std::uint32_t>(first), 20000, 6}));
    disk.medium.writeSector(first, sector);
    disk.medium.syncSectors();
    for (const auto& [name, content] : files) disk.putFile(first, name, content);
  }

  const Files kInstaller{{"LINUX", "kernel"}, {"initrd.rgz", "disk"}};
  FakeDisks disks;
  std::vector<std::string> said;
};

TEST_F(DiskChoice, IsTheFirstDisk) {
  disks.add("sda", 64 * kMegabyte);
  disks.add("sdb", 64 * kMegabyte);
  EXPECT_EQ(choose(), "sda");
  EXPECT_THAT(said, IsEmpty());
}

TEST_F(DiskChoice, WithoutADiskThereIsASentence) {
  EXPECT_EQ(failureOf([&] { choose(); }),
            "No disk was found. Connect a disk, and start this PC again.");
}

TEST_F(DiskChoice, PassesOverADiskThatIsTooSmallAndSaysSo) {
  disks.add("sda", kSmallestDisk - 1);
  disks.add("sdb", kSmallestDisk);
  EXPECT_EQ(choose(), "sdb");
  EXPECT_THAT(said, ElementsAre(HasSubstr("The disk sda is too small: it has 3 MB")));
}

TEST_F(DiskChoice, PassesOverADiskThatTheSystemCannotInstallOn) {
  disks.add("sda", 64 * kMegabyte).obstacle = "it is write-protected";
  disks.add("sdb", 64 * kMegabyte);
  EXPECT_EQ(choose(), "sdb");
  EXPECT_THAT(said, ElementsAre("The disk sda is left alone: it is write-protected."));
}

TEST_F(DiskChoice, OnlyADiskThatIsTooSmallFails) {
  disks.add("sda", 2 * kMegabyte);
  EXPECT_EQ(failureOf([&] { choose(); }),
            "The disk sda is too small: it has 2 MB, and at least 4 MB are needed. Connect a disk, "
            "and start this PC again.");
}

TEST_F(DiskChoice, PassesOverTheMediumWithAPartition) {
  makeVolume(disks.add("sda", 64 * kMegabyte), 63, kInstaller);
  disks.add("sdb", 64 * kMegabyte);
  EXPECT_EQ(choose(true), "sdb");
  EXPECT_THAT(said, ElementsAre(HasSubstr("The disk sda is left alone")));
}

TEST_F(DiskChoice, PassesOverTheMediumWithoutAPartition) {
  makeVolume(disks.add("sda", 64 * kMegabyte), 0, kInstaller);
  disks.add("sdb", 64 * kMegabyte);
  EXPECT_EQ(choose(true), "sdb");
}

TEST_F(DiskChoice, OnlyTheMediumFails) {
  makeVolume(disks.add("sda", 64 * kMegabyte), 63, kInstaller);
  EXPECT_EQ(failureOf([&] { choose(true); }),
            "The disk sda is left alone: it holds the installer system, and this PC may have been "
            "started from it. Connect a disk, and start this PC again.");
}

TEST_F(DiskChoice, BootedOverTheNetworkNoDiskIsPassedOver) {
  makeVolume(disks.add("sda", 64 * kMegabyte), 63, kInstaller);
  EXPECT_EQ(choose(false), "sda");
}

TEST_F(DiskChoice, OtherVolumesAreNoMedium) {
  makeVolume(disks.add("sda", 64 * kMegabyte), 63, {{"linux", ""}, {"initrd.img", ""}});
  EXPECT_EQ(choose(true), "sda");
}

TEST_F(DiskChoice, FoldersOfTheFilesNamesAreNoMedium) {
  FakeDisk& disk = disks.add("sda", 64 * kMegabyte);
  makeVolume(disk, 63, {});
  disk.putFolder(63, "linux");
  disk.putFolder(63, "initrd.rgz");
  EXPECT_EQ(choose(true), "sda");
}

TEST_F(DiskChoice, AnEmptyDiskIsNoMedium) {
  disks.add("sda", 64 * kMegabyte);
  EXPECT_EQ(choose(true), "sda");
}

TEST_F(DiskChoice, AMediumThatCannotBeLookedAtIsNotErased) {
  for (const std::uint64_t first : {0, 63}) {
    FakeDisks others;
    makeVolume(others.add("sda", 64 * kMegabyte), first, kInstaller);
    others.add("sdb", 64 * kMegabyte);
    const int operations = [&] {
      chooseDisk(others, true, [](const std::string&) {});
      return others.faults.operations;
    }();
    EXPECT_GE(operations, 5);
    for (int i = 0; i < operations; ++i) {
      others.faults.restart();
      others.faults.failAt = i;
      std::string chosen = "none";
      EXPECT_NE(
          failureOf([&] { chosen = chooseDisk(others, true, [](const std::string&) {})->name(); }),
          "none")
          << i << " " << chosen;
    }
  }
}

}  // namespace
}  // namespace omniset::test
