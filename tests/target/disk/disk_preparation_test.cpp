#include "target/disk/disk_preparation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disk_fixture.h"
#include "target/disk/fat16_format.h"
#include "target/disk/fat_boot_sector.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

using DiskPreparationTest = DiskFixture;

TEST_F(DiskPreparationTest, AnEmptyDiskGetsOnePartitionAndAVolume) {
  EXPECT_FALSE(store->isPrepared());
  store->beginPreparation(false);
  EXPECT_TRUE(store->isPrepared());
  EXPECT_THAT(said, ElementsAre("Disk sda, 64 MB: no installation is on it.",
                                "Disk sda, 64 MB: everything on it is erased; one partition of "
                                "63 MB, FAT16."));
  const Sector mbr = disk.medium.sector(0);
  const auto partition = firstPartition(mbr, disk.sectorCount);
  ASSERT_TRUE(partition);
  EXPECT_EQ(partition->first, kPartitionAt);
  EXPECT_EQ(partition->count, 63 * kMegabyte);
  EXPECT_EQ(asText(std::span(mbr).first(9)), "disk code");
  const Sector boot = disk.medium.sector(kPartitionAt);
  EXPECT_TRUE(looksLikeFat(boot));
  EXPECT_EQ(asText(std::span(boot).subspan(62, 11)), "volume code");
}

TEST_F(DiskPreparationTest, DiskAndVolumeGetNumbersOfTheirOwn) {
  store->beginPreparation(false);
  const Sector mbr = disk.medium.sector(0);
  const Sector boot = disk.medium.sector(kPartitionAt);
  EXPECT_EQ(ByteReader(std::span(mbr).subspan(440)).u32le(), 0x1001u);
  EXPECT_EQ(ByteReader(std::span(boot).subspan(39)).u32le(), 0x1002u);
}

TEST_F(DiskPreparationTest, ErasesACompleteInstallationAndSaysSo) {
  install({{"a.bdl", "1"}, {"autorun.scr", ""}});
  said.clear();
  store->beginPreparation(false);
  EXPECT_EQ(said[0], "Disk sda, 64 MB: an installation of 2 files is on it; it is installed anew.");
  EXPECT_THAT(files(), IsEmpty());
  store->abandon();
  EXPECT_EQ(inspect(), Installation::kBrokenOff);
}

TEST_F(DiskPreparationTest, RecognisesAnInstallationThatBrokeOff) {
  store->beginPreparation(false);
  put("a.bdl", "1");
  store->abandon();
  said.clear();
  store->beginPreparation(false);
  EXPECT_EQ(said[0], "Disk sda, 64 MB: the installation on it broke off; it is installed anew.");
}

TEST_F(DiskPreparationTest, RecognisesAFormatThatBrokeOff) {
  store->beginPreparation(false);
  store->abandon();
  beginFormat(*disks.open(disk), planPartition("sda", disk.sectorCount));
  said.clear();
  store->beginPreparation(false);
  EXPECT_THAT(said[0], HasSubstr("broke off"));
}

TEST_F(DiskPreparationTest, RecognisesAnInstallationOfWhichAFileIsMissing) {
  install({{"a.bdl", "1"}});
  disk.medium.removeEntry(kPartitionAt, "a.bdl");
  disk.medium.syncFiles();
  said.clear();
  store->beginPreparation(false);
  EXPECT_THAT(said[0], HasSubstr("not whole any more"));
}

TEST_F(DiskPreparationTest, RecognisesAnInstallationWithAFileOfAnotherSize) {
  install({{"a.bdl", "1"}});
  disk.putFile(kPartitionAt, "a.bdl", "12");
  said.clear();
  store->beginPreparation(false);
  EXPECT_THAT(said[0], HasSubstr("not whole any more"));
}

TEST_F(DiskPreparationTest, AVolumeThatCannotBeReadIsErasedAllTheSame) {
  install({{"a.bdl", "1"}});
  disks.faults.restart();
  store->beginPreparation(false);
  const auto& log = disks.faults.log;
  const auto mount = std::find(log.begin(), log.end(), "sda mount") - log.begin();
  store->abandon();
  disks.faults.restart();
  disks.faults.failAt = static_cast<int>(mount);
  store->beginPreparation(false);
  EXPECT_TRUE(store->isPrepared());
}

TEST_F(DiskPreparationTest, AWholeDiskVolumeOfOthersIsErased) {
  disk.medium.writeSector(0, makeFat16BootSector({}, planFat16(20000), 0, 1));
  disk.putFile(0, "thesis.txt", "x");
  install({{"a.bdl", "1"}});
  EXPECT_THAT(disk.files(0), IsEmpty());
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(DiskPreparationTest, NothingIsLeftOfAGuidPartitionTable) {
  Sector header{};
  ByteWriter(header).put(asBytes("EFI PART"));
  disk.medium.writeSector(1, header);
  disk.medium.writeSector(disk.sectorCount - 1, header);
  store->beginPreparation(false);
  EXPECT_EQ(disk.medium.sector(1), Sector{});
  EXPECT_EQ(disk.medium.sector(disk.sectorCount - 1), Sector{});
}

TEST_F(DiskPreparationTest, SectorsBehindThePartitionAreNotWrittenToWithoutReason) {
  disk.sectorCount = 3000 * kMegabyte;
  Sector data{};
  data[0] = 'x';
  disk.medium.writeSector(disk.sectorCount - 1, data);
  store->beginPreparation(false);
  EXPECT_EQ(disk.medium.sector(disk.sectorCount - 1), data);
}

TEST_F(DiskPreparationTest, TheRestOfALargeDiskStaysFree) {
  disk.sectorCount = 100 * 1024 * kMegabyte;
  store->beginPreparation(false);
  EXPECT_EQ(said[1],
            "Disk sda, 100 GB: everything on it is erased; one partition of 2048 MB, FAT16.");
}

TEST_F(DiskPreparationTest, WithoutADiskNothingIsPrepared) {
  disk.sectorCount = kMegabyte;
  EXPECT_THAT(failureOf([&] { store->beginPreparation(false); }), HasSubstr("sda is too small"));
  EXPECT_FALSE(store->isPrepared());
  EXPECT_EQ(failureOf([&] { store->openFile("a.bdl", 1); }), "The disk has not been prepared.");
}

TEST_F(DiskPreparationTest, BootCodeThatIsTooLongIsToldBeforeTheDiskIsPartitioned) {
  const std::vector<std::uint8_t> code(500);
  DiskStore other(
      disks, [](const std::string&) {}, {code, {}}, false, [] { return 1u; });
  EXPECT_THAT(failureOf([&] { other.beginPreparation(false); }), HasSubstr("too long"));
  EXPECT_EQ(disk.medium.sector(0), Sector{});
}

TEST_F(DiskPreparationTest, NothingElseIsTouchedOnAnotherDisk) {
  FakeDisk& other = disks.add("sdb", 64 * kMegabyte);
  install({{"a.bdl", "1"}});
  EXPECT_THAT(other.medium.now().sectors, IsEmpty());
}

}  // namespace
}  // namespace omniset::test
