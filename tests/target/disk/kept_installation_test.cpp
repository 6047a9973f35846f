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
using ::testing::Pair;

constexpr bool kKeep = true;

// A disk with an installation that has run: the router has left its configuration there.
struct KeptInstallation : DiskFixture {
  KeptInstallation() {
    install({{"system.bdl", "old"}, {"routing.bdl", "old"}, {"autorun.scr", "script"}});
    disk.putFile(kPartitionAt, "config.db", "precious");
    disk.putFolder(kPartitionAt, "logs");
    store->abandon();
    said.clear();
    disks.faults.restart();
  }
};

TEST_F(KeptInstallation, KeepsAllButThePackages) {
  const auto sectors = disk.medium.now().sectors;
  store->beginPreparation(kKeep);
  EXPECT_THAT(files(), ElementsAre(Pair("autorun.scr", "script"), Pair("config.db", "precious"),
                                   Pair("logs", "?")));
  EXPECT_EQ(disk.medium.now().sectors, sectors);
  EXPECT_THAT(said, ElementsAre("Disk sda, 64 MB: an installation of 3 files is on it; it is "
                                "installed anew.",
                                "Disk sda, 64 MB: the partition and the configuration on it are "
                                "kept; the packages are replaced."));
}

TEST_F(KeptInstallation, IsInstalledAnew) {
  install({{"system.bdl", "new"}, {"autorun.scr", ""}}, kKeep);
  EXPECT_THAT(files(), ElementsAre(Pair("autorun.scr", "script"), Pair("config.db", "precious"),
                                   Pair("logs", "?"), Pair("system.bdl", "new")));
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(KeptInstallation, DoesNotCountFromThePreparationOn) {
  store->beginPreparation(kKeep);
  store->abandon();
  EXPECT_EQ(inspect(), Installation::kBrokenOff);
}

TEST_F(KeptInstallation, TheMarkGoesBeforeAnythingElse) {
  store->beginPreparation(kKeep);
  const auto& log = disks.faults.log;
  const auto firstOf = [&](const char* operation) {
    return std::find_if(log.begin(), log.end(),
                        [&](const std::string& entry) { return entry.starts_with(operation); });
  };
  EXPECT_LT(firstOf("sda create omniset.ok"), firstOf("sda sync volume"));
  EXPECT_LT(firstOf("sda sync volume"), firstOf("sda remove"));
  EXPECT_NE(firstOf("sda remove"), log.end());
}

TEST_F(KeptInstallation, AnEmptyScriptLeavesTheOneThatIsThere) {
  store->beginPreparation(kKeep);
  put("AUTORUN.SCR", "");
  EXPECT_TRUE(hasSaid("The AUTORUN.SCR that is on disk sda stays as it is."));
  store->finish();
  EXPECT_EQ(files().at("autorun.scr"), "script");
  const auto mark = parseMark(disk.files(kPartitionAt).at(kMarkName));
  ASSERT_TRUE(mark);
  ASSERT_EQ(mark->size(), 1u);
  EXPECT_EQ(mark->front().size, 6u);
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(KeptInstallation, AScriptWithContentReplacesTheOneThatIsThere) {
  install({{"autorun.scr", "new script"}}, kKeep);
  EXPECT_EQ(files().at("autorun.scr"), "new script");
}

TEST_F(KeptInstallation, AnEmptyScriptComesWhereThereIsNone) {
  disk.medium.removeEntry(kPartitionAt, "autorun.scr");
  disk.medium.syncFiles();
  install({{"autorun.scr", ""}}, kKeep);
  EXPECT_EQ(files().at("autorun.scr"), "");
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(KeptInstallation, OnlyAnEmptyScriptLeavesAFile) {
  disk.putFile(kPartitionAt, "other.cfg", "old");
  install({{"other.cfg", ""}}, kKeep);
  EXPECT_EQ(files().at("other.cfg"), "");
}

TEST_F(KeptInstallation, ALargeScriptIsCheckedWhole) {
  disk.putFile(kPartitionAt, "autorun.scr", std::string(200'000, 's'));
  install({{"autorun.scr", ""}}, kKeep);
  EXPECT_EQ(inspect(), Installation::kComplete);
  EXPECT_EQ(files().at("autorun.scr").size(), 200'000u);
}

TEST_F(KeptInstallation, AfterANewInstallationAnEmptyScriptReplaces) {
  install({{"autorun.scr", "x"}}, kKeep);
  store->beginPreparation(false);
  put("autorun.scr", "script");
  put("autorun.scr", "");
  EXPECT_EQ(files().at("autorun.scr"), "");
}

TEST_F(KeptInstallation, FilesNamedInTheMarkGoWhateverTheirNames) {
  install({{"license.key", "old"}});
  disk.putFile(kPartitionAt, "config.db", "precious");
  store->beginPreparation(kKeep);
  EXPECT_THAT(files(), ElementsAre(Pair("config.db", "precious")));
}

TEST_F(KeptInstallation, PackagesGoWithoutAMark) {
  disk.medium.removeEntry(kPartitionAt, kMarkName);
  disk.putFile(kPartitionAt, "UPPER.BDL", "old");
  disk.putFolder(kPartitionAt, "folder.bdl");
  said.clear();
  store->beginPreparation(kKeep);
  EXPECT_THAT(files(), ElementsAre(Pair("autorun.scr", "script"), Pair("config.db", "precious"),
                                   Pair("folder.bdl", "?"), Pair("logs", "?")));
  EXPECT_THAT(said[0], HasSubstr("the installation on it broke off"));
}

TEST_F(KeptInstallation, OneThatBrokeOffStillKeepsTheConfiguration) {
  store->beginPreparation(kKeep);
  put("system.bdl", "half of the installation");
  store->openFile("routing.bdl", 100);
  disks.cutPower(1);
  store.reset();
  store = makeStore();
  said.clear();
  install({{"system.bdl", "new"}, {"autorun.scr", ""}}, kKeep);
  EXPECT_THAT(said[0], HasSubstr("the installation on it broke off"));
  EXPECT_THAT(said[1], HasSubstr("are kept"));
  EXPECT_EQ(files().at("config.db"), "precious");
  EXPECT_EQ(files().at("autorun.scr"), "script");
  EXPECT_EQ(files().at("system.bdl"), "new");
  EXPECT_EQ(inspect(), Installation::kComplete);
}

// There may be room for one file, but not for two halves of it.
TEST_F(KeptInstallation, AHalfFileOfBeforeGoesFirst) {
  disk.putFile(kPartitionAt, kPartName, "half of a file");
  store->beginPreparation(kKeep);
  EXPECT_FALSE(files().contains(kPartName));
  EXPECT_EQ(files().at("config.db"), "precious");
}

TEST_F(KeptInstallation, AHostileMarkRemovesNothing) {
  disk.putFile(kPartitionAt, kMarkName, makeMark({{"../config.db", 8, 0}, {"config.db", 8, 0}}));
  store->beginPreparation(kKeep);
  EXPECT_EQ(files().at("config.db"), "precious");
}

TEST_F(KeptInstallation, AVolumeOfAnotherMakerIsKeptToo) {
  Sector boot = disk.medium.sector(kPartitionAt);
  std::fill_n(boot.begin() + 3, 8, std::uint8_t{' '});
  disk.medium.writeSector(kPartitionAt, boot);
  disk.medium.syncSectors();
  disk.putFile(kPartitionAt, "config.db", "precious");
  store->beginPreparation(kKeep);
  EXPECT_THAT(said[0], HasSubstr("no installation is on it"));
  EXPECT_EQ(files().at("config.db"), "precious");
  store->abandon();
  EXPECT_EQ(inspect(), Installation::kBrokenOff);
}

TEST_F(KeptInstallation, WithoutAPartitionThereIsNothingToKeep) {
  disk.medium.writeSector(0, Sector{});
  store->beginPreparation(kKeep);
  EXPECT_THAT(said,
              ElementsAre("Disk sda, 64 MB: there is nothing on it to keep.",
                          HasSubstr("no installation"), HasSubstr("everything on it is erased")));
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(KeptInstallation, WithoutAFileSystemThereIsNothingToKeep) {
  beginFormat(*disks.open(disk), {2048, 63 * 2048, 6});
  store->beginPreparation(kKeep);
  EXPECT_THAT(said[0], HasSubstr("nothing on it to keep"));
  EXPECT_THAT(said[1], HasSubstr("broke off"));
  EXPECT_TRUE(store->isPrepared());
}

TEST_F(KeptInstallation, WithoutAFirstSectorThereIsNothingToKeep) {
  beginFormat(*disks.open(disk), Partition{});
  store->beginPreparation(kKeep);
  EXPECT_THAT(said[0], HasSubstr("nothing on it to keep"));
  EXPECT_THAT(said[1], HasSubstr("broke off"));
  EXPECT_TRUE(store->isPrepared());
}

struct WhatCannotBeKept : KeptInstallation {
  void expectNotErased() {
    disk.medium.syncSectors();
    const auto sectors = disk.medium.now().sectors;
    EXPECT_EQ(failureOf([&] { store->beginPreparation(kKeep); }),
              "What is on the disk sda cannot be kept. Install without keeping the configuration "
              "to erase everything on the disk.");
    EXPECT_EQ(disk.medium.now().sectors, sectors);
  }
};

TEST_F(WhatCannotBeKept, APartitionOfAnotherTypeIsNotErased) {
  disk.medium.writeSector(0, makeMbr({}, 1, {2048, 63 * 2048, 0x83}));
  expectNotErased();
}

TEST_F(WhatCannotBeKept, AVolumeWhoseFirstSectorIsDamagedIsNotErased) {
  disk.medium.writeSector(kPartitionAt, Sector{});
  expectNotErased();
}

TEST_F(WhatCannotBeKept, AVolumeWithoutAPartitionIsNotErased) {
  disk.medium.writeSector(0, makeFat16BootSector({}, planFat16(20000), 0, 1));
  expectNotErased();
}

TEST_F(WhatCannotBeKept, APartitionThatEndsBehindTheDiskIsNotErased) {
  disk.sectorCount = 63 * 2048;
  expectNotErased();
}

TEST_F(WhatCannotBeKept, APartitionBehindAnEmptyEntryIsNotErased) {
  Sector sector = disk.medium.sector(0);
  std::copy_n(sector.begin() + 446, 16, sector.begin() + 462);
  std::fill_n(sector.begin() + 446, 16, std::uint8_t{0});
  disk.medium.writeSector(0, sector);
  expectNotErased();
}

TEST_F(KeptInstallation, TheVolumeOfTheFirstPartitionIsKeptBesideOthers) {
  Sector sector = disk.medium.sector(0);
  std::copy_n(sector.begin() + 446, 16, sector.begin() + 462);
  disk.medium.writeSector(0, sector);
  store->beginPreparation(kKeep);
  EXPECT_EQ(files().at("config.db"), "precious");
}

TEST_F(KeptInstallation, AnEmptyScriptAfterAllIsErasedIsEmpty) {
  disk.medium.writeSector(0, Sector{});
  install({{"autorun.scr", ""}}, kKeep);
  EXPECT_EQ(files().at("autorun.scr"), "");
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(KeptInstallation, AVolumeThatCannotBeMountedIsNotErased) {
  disks.faults.failAt = 3;  // find, two sectors, mount
  EXPECT_EQ(failureOf([&] { store->beginPreparation(kKeep); }),
            "Cannot do: sda mount. Install without keeping the configuration to erase everything "
            "on the disk.");
  EXPECT_EQ(files().at("config.db"), "precious");
  EXPECT_EQ(inspect(), Installation::kComplete);
}

}  // namespace
}  // namespace omniset::test
