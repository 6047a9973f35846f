#include "target/disk/disk_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disk_fixture.h"
#include "target/disk/mark_file.h"

namespace omniset::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;

struct DiskStoreTest : DiskFixture {
  std::optional<MarkedFiles> mark() const {
    return parseMark(disk.files(kPartitionAt).at(kMarkName));
  }
};

TEST_F(DiskStoreTest, HoldsTheFilesAndTheMark) {
  std::string content(100'000, '\0');
  for (std::size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 7);
  install({{"system.bdl", content}, {"autorun.scr", ""}});
  EXPECT_THAT(files(), ElementsAre(Pair("autorun.scr", ""), Pair("system.bdl", content)));
  Crc32 crc;
  crc.add(asBytes(content));
  EXPECT_EQ(mark(), (MarkedFiles{{"autorun.scr", 0, 0}, {"system.bdl", 100'000, crc.value()}}));
  EXPECT_EQ(inspect(), Installation::kComplete);
  EXPECT_EQ(said.back(), "Disk sda: all 2 files are written and safe.");
  EXPECT_EQ(disk.mounted, 0);
}

TEST_F(DiskStoreTest, AnInstallationWithoutFilesCounts) {
  install({});
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(DiskStoreTest, CountsOnlyWhenItIsFinished) {
  store->beginPreparation(false);
  put("a.bdl", "1");
  EXPECT_FALSE(mark());
  store->abandon();
  EXPECT_EQ(inspect(), Installation::kBrokenOff);
}

// What waits in memory at the end of a file is not more than a slow disk writes in time.
TEST_F(DiskStoreTest, ALargeFileIsSyncedWhileItComes) {
  store->beginPreparation(false);
  disks.faults.restart();
  put("large.bdl", std::string(10'000'000, 'x'));
  EXPECT_THAT(disks.faults.log, Contains("sda sync omniset.tmp").Times(3));
}

TEST_F(DiskStoreTest, WhenItSaysThatAllIsSafeTheDiskHasNothingLeftToWrite) {
  install({{"a.bdl", "1"}});
  const auto& log = disks.faults.log;
  ASSERT_GE(log.size(), 2u);
  EXPECT_EQ(log[log.size() - 2], "sda unmount");
  EXPECT_EQ(log.back(), "sda flush");
}

TEST_F(DiskStoreTest, FinishesTwice) {
  install({{"a.bdl", "1"}});
  store->finish();
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(DiskStoreTest, AHalfReceivedFileIsDroppedWhenItIsFinished) {
  store->beginPreparation(false);
  put("a.bdl", "1");
  store->openFile("b.bdl", 10);
  store->write(asBytes("half"));
  store->finish();
  EXPECT_THAT(files(), ElementsAre(Pair("a.bdl", "1")));
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(DiskStoreTest, AnotherFileMakesItIncompleteUntilItIsFinishedAgain) {
  install({{"a.bdl", "1"}});
  store->openFile("b.bdl", 1);
  EXPECT_FALSE(mark());
  store->write(asBytes("2"));
  store->closeFile();
  EXPECT_FALSE(mark());
  store->finish();
  EXPECT_THAT(files(), ElementsAre(Pair("a.bdl", "1"), Pair("b.bdl", "2")));
  EXPECT_EQ(mark()->size(), 2u);
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(DiskStoreTest, AnotherFileThatCannotBeTakenIsNotForgotten) {
  install({{"a.bdl", "1"}});
  disks.faults.restart();
  disks.faults.failAt = 3;  // mount, create, write, sync of the volume
  EXPECT_NE(failureOf([&] { store->openFile("b.bdl", 1); }), "none");
  EXPECT_FALSE(mark());
  store->finish();
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(DiskStoreTest, AFileReplacesTheOneOfThatName) {
  store->beginPreparation(false);
  put("a.bdl", "first and longer");
  put("A.BDL", "second");
  store->finish();
  EXPECT_THAT(files(), ElementsAre(Pair("A.BDL", "second")));
  EXPECT_EQ(mark()->size(), 1u);
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(DiskStoreTest, AHalfReceivedFileLeavesTheOneOfThatName) {
  store->beginPreparation(false);
  put("a.bdl", "old");
  store->openFile("a.bdl", 1000);
  store->write(asBytes("half"));
  EXPECT_EQ(files().at("a.bdl"), "old");
  put("b.bdl", "b");
  EXPECT_THAT(files(), ElementsAre(Pair("a.bdl", "old"), Pair("b.bdl", "b")));
}

TEST_F(DiskStoreTest, AFileThatIsNotCompleteIsNotTaken) {
  store->beginPreparation(false);
  store->openFile("a.bdl", 10);
  store->write(asBytes("half"));
  EXPECT_EQ(failureOf([&] { store->closeFile(); }), "a.bdl is not complete.");
  store->abandon();
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(DiskStoreTest, RefusesNamesThatADiskCannotHold) {
  store->beginPreparation(false);
  for (const char* name : {"", "..", "a/b", "a\\b", "C:x", ".x", "a*", "a?", "a<b", "a|b", "a\"",
                           "a.", "a ", "con", "SYSTEM~1.BDL", "omniset.ok", "OMNISET.TMP"}) {
    EXPECT_EQ(failureOf([&] { store->openFile(name, 1); }),
              std::string("A file of this name is not taken: ") + name);
  }
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(DiskStoreTest, ARefusedNameLeavesAFinishedInstallation) {
  install({{"a.bdl", "1"}});
  EXPECT_NE(failureOf([&] { store->openFile("../x", 1); }), "none");
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(DiskStoreTest, ChecksTheSpaceBefore) {
  store->beginPreparation(false);
  disk.freeBytes = 999;
  EXPECT_EQ(failureOf([&] { store->openFile("a.bdl", 1000); }),
            "Not enough space on disk sda for a.bdl: 1000 bytes needed, 999 free.");
  disk.freeBytes = 1000;
  EXPECT_EQ(failureOf([&] { store->openFile("a.bdl", 1000); }), "none");
}

TEST_F(DiskStoreTest, TakesAsManyFilesAsTheMarkHolds) {
  store->beginPreparation(false);
  for (std::size_t i = 0; i < kMostMarkedFiles; ++i) put(std::to_string(i) + ".bdl", "");
  EXPECT_THAT(failureOf([&] { store->openFile("a.bdl", 1); }), HasSubstr("Too many files"));
  store->finish();
  EXPECT_EQ(mark()->size(), kMostMarkedFiles);
}

TEST_F(DiskStoreTest, DoesNotFinishWhenAFileIsNotThereAsItWasWritten) {
  store->beginPreparation(false);
  put("a.bdl", "1");
  disk.medium.removeEntry(kPartitionAt, "a.bdl");
  EXPECT_EQ(failureOf([&] { store->finish(); }), "a.bdl is not on disk sda as it was written.");
  store->abandon();
  EXPECT_EQ(inspect(), Installation::kBrokenOff);
}

TEST_F(DiskStoreTest, DoesNotFinishWhenAFileHasAnotherSize) {
  store->beginPreparation(false);
  put("a.bdl", "1");
  disk.putFile(kPartitionAt, "a.bdl", "12");
  EXPECT_EQ(failureOf([&] { store->finish(); }), "a.bdl is not on disk sda as it was written.");
}

// A disk that fails is told with the file for which it failed.
TEST_F(DiskStoreTest, EachFileIsOnTheDiskBeforeItGetsItsName) {
  store->beginPreparation(false);
  disks.faults.restart();
  put("a.bdl", "1");
  EXPECT_THAT(disks.faults.log,
              ElementsAre("sda free", "sda create omniset.tmp", "sda write omniset.tmp",
                          "sda sync omniset.tmp", "sda rename a.bdl"));
}

TEST_F(DiskStoreTest, WithoutAPreparationNothingIsTaken) {
  EXPECT_EQ(failureOf([&] { store->openFile("a.bdl", 1); }), "The disk has not been prepared.");
  EXPECT_EQ(failureOf([&] { store->write(asBytes("1")); }), "No file is being written.");
  EXPECT_EQ(failureOf([&] { store->closeFile(); }), "No file is being written.");
  EXPECT_EQ(failureOf([&] { store->finish(); }), "The disk has not been prepared.");
}

TEST_F(DiskStoreTest, AfterAbandoningTheDiskMustBePreparedAgain) {
  install({{"a.bdl", "1"}});
  store->abandon();
  EXPECT_FALSE(store->isPrepared());
  EXPECT_EQ(failureOf([&] { store->openFile("b.bdl", 1); }), "The disk has not been prepared.");
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(DiskStoreTest, AbandoningDropsTheFileAndLetsGoOfTheDisk) {
  store->beginPreparation(false);
  put("a.bdl", "1");
  store->openFile("b.bdl", 10);
  store->write(asBytes("half"));
  store->abandon();
  EXPECT_EQ(disk.mounted, 0);
  EXPECT_EQ(disk.openFiles, 0);
  EXPECT_THAT(files(), ElementsAre(Pair("a.bdl", "1")));
  store->abandon();
}

TEST_F(DiskStoreTest, AbandoningNeverRaises) {
  store->beginPreparation(false);
  store->openFile("b.bdl", 10);
  disks.faults.restart();
  disks.faults.failAt = 0;
  disks.faults.failsForGood = true;
  store->abandon();
  EXPECT_EQ(disk.mounted, 0);
  EXPECT_TRUE(hasSaid("Cannot do: sda remove omniset.tmp."));
}

TEST_F(DiskStoreTest, GoesWithoutATrace) {
  store->beginPreparation(false);
  store->openFile("b.bdl", 10);
  store.reset();
  EXPECT_EQ(disk.mounted, 0);
}

TEST_F(DiskStoreTest, IsPreparedAgainWhileAFileIsOpen) {
  store->beginPreparation(false);
  store->openFile("b.bdl", 10);
  install({{"a.bdl", "1"}});
  EXPECT_THAT(files(), ElementsAre(Pair("a.bdl", "1")));
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(DiskStoreTest, ANewPreparationForgetsTheFilesBefore) {
  install({{"a.bdl", "1"}});
  install({{"b.bdl", "2"}});
  EXPECT_THAT(files(), ElementsAre(Pair("b.bdl", "2")));
  EXPECT_EQ(mark()->size(), 1u);
}

}  // namespace
}  // namespace omniset::test
