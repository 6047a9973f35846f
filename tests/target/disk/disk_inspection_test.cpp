#include "target/disk/disk_inspection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disk_fixture.h"
#include "target/disk/fat16_format.h"

namespace omniset::test {
namespace {

struct DiskInspectionTest : DiskFixture {
  // To be called when the disk is as it is to be inspected.
  std::string inspected() {
    opened = disks.open(disk);
    DiskInspection inspection(*opened);
    while (!inspection.step()) {
    }
    EXPECT_EQ(disk.mounted, 0);
    return inspection.text();
  }
  // A change that no installation makes.
  void spoil(const std::string& name, const std::string& content) {
    disk.putFile(kPartitionAt, name, content);
  }
  std::unique_ptr<TargetDisk> opened;
};

TEST_F(DiskInspectionTest, AnEmptyDisk) {
  EXPECT_EQ(inspected(), "sda 64 MB");
}

TEST_F(DiskInspectionTest, AnInstalledDisk) {
  install({{"a.bdl", "1"}, {"b.bdl", ""}});
  EXPECT_EQ(inspected(), "sda 64 MB, installed");
}

TEST_F(DiskInspectionTest, TellsTheFiles) {
  install({{"a.bdl", "1"}, {"b.bdl", ""}});
  opened = disks.open(disk);
  DiskInspection inspection(*opened);
  while (!inspection.step()) {
  }
  EXPECT_EQ(inspection.files().size(), 2u);
}

TEST_F(DiskInspectionTest, AnInstallationThatBrokeOffAnywhere) {
  store->beginPreparation(false);
  store->abandon();
  EXPECT_EQ(inspected(), "sda 64 MB, installation broke off");
  beginFormat(*disks.open(disk), {2048, 63 * 2048, 6});
  EXPECT_EQ(inspected(), "sda 64 MB, installation broke off");
}

// Over a volume that covered the whole disk.
TEST_F(DiskInspectionTest, AnInstallationThatBrokeOffInTheFirstSector) {
  beginFormat(*disks.open(disk), Partition{});
  EXPECT_EQ(inspected(), "sda 64 MB, installation broke off");
}

TEST_F(DiskInspectionTest, AVolumeOfOthers) {
  store->beginPreparation(false);
  store->abandon();
  Sector boot = disk.medium.sector(kPartitionAt);
  boot[3] = 'M';
  disk.medium.writeSector(kPartitionAt, boot);
  EXPECT_EQ(inspected(), "sda 64 MB");
  spoil("omniset.tmp", "");
  EXPECT_EQ(inspected(), "sda 64 MB, installation broke off");
}

TEST_F(DiskInspectionTest, AFileThatIsMissing) {
  install({{"a.bdl", "1"}, {"b.bdl", "2"}});
  disk.medium.removeEntry(kPartitionAt, "b.bdl");
  EXPECT_EQ(inspected(), "sda 64 MB, installed, not whole any more");
}

TEST_F(DiskInspectionTest, AFileOfAnotherSize) {
  install({{"a.bdl", "1"}, {"b.bdl", "2"}});
  spoil("b.bdl", "22");
  EXPECT_EQ(inspected(), "sda 64 MB, installed, not whole any more");
}

TEST_F(DiskInspectionTest, AFileOfAnotherContent) {
  install({{"a.bdl", "1"}, {"b.bdl", std::string(600'000, 'b')}, {"c.bdl", "3"}});
  spoil("b.bdl", std::string(599'999, 'b') + "c");
  EXPECT_EQ(inspected(), "sda 64 MB, installed, not whole any more");
}

TEST_F(DiskInspectionTest, FilesBesideDoNotMatter) {
  install({{"a.bdl", "1"}});
  spoil("config.db", "x");
  EXPECT_EQ(inspected(), "sda 64 MB, installed");
}

TEST_F(DiskInspectionTest, AMarkThatIsTooLarge) {
  install({{"a.bdl", "1"}});
  spoil(kMarkName, std::string(kLongestMark + 1, ' '));
  EXPECT_EQ(inspected(), "sda 64 MB, installation broke off");
}

TEST_F(DiskInspectionTest, EachStepReadsAQuarterOfAMegabyteAtMost) {
  install({{"a.bdl", std::string(1'000'000, 'a')}, {"b.bdl", std::string(300'000, 'b')}});
  opened = disks.open(disk);
  DiskInspection inspection(*opened);
  int steps = 1;
  while (!inspection.step()) {
    EXPECT_EQ(inspection.text(), "sda 64 MB");
    EXPECT_EQ(disk.mounted, 1);
    ++steps;
    ASSERT_LT(steps, 20);
  }
  EXPECT_GE(steps, 6);
  EXPECT_EQ(inspection.text(), "sda 64 MB, installed");
  EXPECT_TRUE(inspection.step());
}

TEST_F(DiskInspectionTest, MayBeDroppedAtAnyMoment) {
  install({{"a.bdl", std::string(1'000'000, 'a')}});
  opened = disks.open(disk);
  for (int steps = 0; steps < 5; ++steps) {
    {
      DiskInspection inspection(*opened);
      for (int i = 0; i < steps; ++i) inspection.step();
    }
    EXPECT_EQ(disk.mounted, 0);
    EXPECT_EQ(disk.openFiles, 0);
  }
}

TEST_F(DiskInspectionTest, ADiskThatFailsIsNotInstalled) {
  install({{"a.bdl", std::string(200'000, 'a')}, {"b.bdl", "2"}});
  disks.faults.restart();
  EXPECT_EQ(inspected(), "sda 64 MB, installed");
  const int operations = disks.faults.operations;
  EXPECT_GE(operations, 8);
  for (int i = 0; i < operations; ++i) {
    disks.faults.restart();
    disks.faults.failAt = i;
    // What is known grows with the boot sector, then with the mark.
    EXPECT_EQ(inspected(), i < 2   ? "sda 64 MB"
                           : i < 6 ? "sda 64 MB, installation broke off"
                                   : "sda 64 MB, installed, not whole any more")
        << i;
  }
}

TEST_F(DiskInspectionTest, WritesNothing) {
  install({{"a.bdl", "1"}});
  disks.faults.restart();
  inspected();
  for (const std::string& operation : disks.faults.log) {
    EXPECT_TRUE(operation.starts_with("sda read") || operation.starts_with("sda open") ||
                operation == "sda mount" || operation == "sda list")
        << operation;
  }
}

}  // namespace
}  // namespace omniset::test
