#include "target/disk/booted_volume.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "own_disk_fixture.h"

namespace omniset::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

struct BootedVolumeTest : ::testing::Test {
  ~BootedVolumeTest() override { EXPECT_THAT(disks.faults.violations, ::testing::IsEmpty()); }

  FakeDisk& add(const std::string& name, std::uint64_t first, std::uint32_t number,
                const Files& files = kInstallerFiles) {
    FakeDisk& disk = disks.add(name, 64 * kMegabyte);
    makeVolume(disk, first, number, files);
    return disk;
  }
  // The disk's name, or the text of the failure.
  std::string find(std::optional<std::uint32_t> number = kOwnNumber) {
    std::string name;
    const std::string failure = failureOf([&] {
      found = findBootedVolume(disks, number);
      name = found.disk->name();
    });
    return failure == "none" ? name : failure;
  }

  FakeDisks disks;
  BootedVolume found;
};

TEST_F(BootedVolumeTest, IsFoundOnTheDiskAsAWhole) {
  add("sda", 0, kOwnNumber);
  EXPECT_EQ(find(), "sda");
  EXPECT_EQ(found.place, TargetDisk::Place::kWholeDisk);
  EXPECT_EQ(found.serialNumber, kOwnNumber);
}

TEST_F(BootedVolumeTest, IsFoundInTheFirstPartition) {
  add("sda", 63, kOwnNumber);
  EXPECT_EQ(find(), "sda");
  EXPECT_EQ(found.place, TargetDisk::Place::kFirstPartition);
  EXPECT_EQ(found.serialNumber, kOwnNumber);
}

TEST_F(BootedVolumeTest, FilesAreFoundWithoutRegardToCase) {
  add("sda", 0, kOwnNumber,
      {{"LINUX", ""}, {"Initrd.RGZ", ""}, {"LDLINUX.SYS", ""}, {"SysLinux.cfg", ""}});
  EXPECT_EQ(find(), "sda");
}

TEST_F(BootedVolumeTest, TheNumberTellsItFromAnother) {
  add("sda", 0, 1);
  add("sdb", 63, kOwnNumber);
  add("vda", 0, 2);
  EXPECT_EQ(find(), "sdb");
}

TEST_F(BootedVolumeTest, WithoutANumberTheOnlyVolumeIsTaken) {
  disks.add("sda", 64 * kMegabyte);
  add("sdb", 0, 1, {{"readme.txt", ""}});
  add("vda", 63, 77);
  EXPECT_EQ(find(std::nullopt), "vda");
  EXPECT_EQ(found.serialNumber, 77u);
}

TEST_F(BootedVolumeTest, WithoutANumberAPartitionOfAnotherSystemIsPassedOver) {
  disks.add("sda", 64 * kMegabyte).medium.writeSector(0, makeMbr({}, 1, {2048, 20000, 0x83}));
  add("sdb", 63, 77);
  EXPECT_EQ(find(std::nullopt), "sdb");
}

TEST_F(BootedVolumeTest, WithoutANumberTwoVolumesCannotBeToldApart) {
  add("sda", 0, 1);
  add("vda", 63, 2);
  EXPECT_EQ(find(std::nullopt),
            "This PC may have been started from any of the disks sda and vda: they hold the same. "
            "Remove all but one of them, and start this PC again.");
}

TEST_F(BootedVolumeTest, WithOneNumberSeveralCannotBeToldApart) {
  add("sda", 0, kOwnNumber);
  add("sdb", 63, kOwnNumber);
  add("vda", 0, kOwnNumber);
  EXPECT_THAT(find(), HasSubstr("any of the disks sda, sdb and vda:"));
}

TEST_F(BootedVolumeTest, NoneIsASentence) {
  const std::string none =
      "The disk that this PC was started from is not among its IDE, SATA and virtio disks. "
      "Connect it as one of these, or install this PC over the network.";
  EXPECT_EQ(find(), none);
  disks.add("sda", 64 * kMegabyte);
  add("sdb", 0, 1);
  EXPECT_EQ(find(), none);
}

TEST_F(BootedVolumeTest, EachOfItsFilesIsNeeded) {
  FakeDisk& disk = add("sda", 0, kOwnNumber);
  for (const auto& [name, content] : kInstallerFiles) {
    Files files = kInstallerFiles;
    files.erase(name);
    makeVolume(disk, 0, kOwnNumber, files);
    EXPECT_THAT(find(), HasSubstr("is not among its")) << name;
    disk.putFolder(0, name);
    EXPECT_THAT(find(), HasSubstr("is not among its")) << name;
  }
}

TEST_F(BootedVolumeTest, ADiskThatCannotBeLookedAtIsNamed) {
  add("sda", 0, kOwnNumber);
  add("sdb", 63, kOwnNumber + 1);
  ASSERT_EQ(find(), "sda");
  const int operations = disks.faults.operations;
  ASSERT_GE(operations, 8);
  for (int i = 1; i < operations; ++i) {
    disks.faults.restart();
    disks.faults.failAt = i;
    EXPECT_THAT(find(), AllOf(HasSubstr("Cannot do: "), HasSubstr("Check the disk sd"),
                              HasSubstr(" or remove it, and start this PC again.")))
        << i;
  }
}

TEST_F(BootedVolumeTest, OneDiskHidesTheOthers) {
  for (const char* name : {"sda", "sdb", "vda"}) disks.add(name, 64 * kMegabyte);
  const auto only = OneDisk(disks, "sdb").find();
  ASSERT_EQ(only.size(), 1u);
  EXPECT_EQ(only[0]->name(), "sdb");
  EXPECT_TRUE(OneDisk(disks, "sdc").find().empty());
}

}  // namespace
}  // namespace omniset::test
