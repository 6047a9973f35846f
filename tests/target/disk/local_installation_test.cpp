#include "target/local_installation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "own_disk_fixture.h"
#include "tests/target/target_fakes.h"

namespace omniset::test {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

struct LocalInstallationTest : OwnDiskFixture {
  // The disk that the PC was started from, with these packages, and what it holds.
  void prepare(const Files& packages, std::uint64_t first = 0) {
    makeVolume(disk, first, kOwnNumber, together(kInstallerFiles, packages));
    before.emplace(disk);
  }
  Files without(const std::string& name) {
    Files files = kPackages;
    files.erase(name);
    return files;
  }
  // Before anything is erased.
  void expectRefusal(const std::string& reason, std::uint64_t memory = 100'000'000) {
    EXPECT_EQ(run(kOwnNumber, memory),
              reason +
                  " Make the disk anew, or install this PC over the network. Nothing was "
                  "changed on any disk.");
    EXPECT_TRUE(DiskPicture(disk) == *before);
  }

  std::optional<DiskPicture> before;
};

TEST_F(LocalInstallationTest, TellsWhatItDoes) {
  prepare(kPackages);
  EXPECT_EQ(run(), "none");
  EXPECT_THAT(
      console.said,
      ElementsAre("Disk sda, 64 MB: this PC was started from it, from the volume 1234-ABCD.",
                  "Reading routing.bdl, 6 bytes.", "Reading system.bdl, 5000 bytes.",
                  "Reading autorun.scr, 6 bytes.",
                  "The packages are in memory, and only there until they are written: do not "
                  "switch this PC off.",
                  "Disk sda, 64 MB: no installation is on it.",
                  "Disk sda, 64 MB: everything on it is erased; one partition of 63 MB, FAT16.",
                  "Writing routing.bdl, 6 bytes.", "Writing system.bdl, 5000 bytes.",
                  "Writing autorun.scr, 6 bytes.", "Disk sda: all 3 files are written and safe.",
                  "All is installed. Restarting."));
}

// From the same files, in the same order, with the same numbers drawn.
TEST_F(LocalInstallationTest, TheDiskIsAsAfterAnInstallationOverTheNetwork) {
  FakeDisks others;
  FakeDisk& other = others.add("sda", 64 * kMegabyte);
  std::uint32_t number = lastNumber;
  DiskStore store(
      others, [](const std::string&) {}, {asBytes("disk code"), asBytes("volume code")}, false,
      [&] { return ++number; });
  store.beginPreparation(false);
  for (const char* name : {"routing.bdl", "system.bdl", "autorun.scr"}) {
    store.openFile(name, static_cast<std::int32_t>(kPackages.at(name).size()));
    store.write(asBytes(kPackages.at(name)));
    store.closeFile();
  }
  store.finish();

  prepare(kPackages);
  EXPECT_EQ(run(), "none");
  EXPECT_TRUE(DiskPicture(disk) == DiskPicture(other));
  EXPECT_EQ(disk.files(kPartitionAt).count(kMarkName), 1u);
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(LocalInstallationTest, WorksFromAPartitionWhereverItBegins) {
  for (const std::uint64_t first : {63, 2048, 8192}) {
    prepare(kPackages, first);
    EXPECT_EQ(run(), "none") << first;
    EXPECT_EQ(inspect(), Installation::kComplete) << first;
    Files files = disk.files(kPartitionAt);
    files.erase(kMarkName);
    EXPECT_EQ(files, kPackages) << first;
  }
}

TEST_F(LocalInstallationTest, OtherDisksAreNotTouched) {
  FakeDisk& first = disks.add("vda", 64 * kMegabyte);
  FakeDisk& second = disks.add("vdb", 64 * kMegabyte);
  makeVolume(first, 0, 1, together(kInstallerFiles, kPackages));
  makeVolume(second, 63, 2, {{"data.txt", "precious"}});
  const DiskPicture firstBefore(first);
  const DiskPicture secondBefore(second);
  prepare(kPackages);
  EXPECT_EQ(run(), "none");
  EXPECT_TRUE(DiskPicture(first) == firstBefore);
  EXPECT_TRUE(DiskPicture(second) == secondBefore);
  EXPECT_EQ(inspect(), Installation::kComplete);
}

// Not the first disk, as an installation over the network would.
TEST_F(LocalInstallationTest, TheDiskIsTakenWhereverItIsConnected) {
  FakeDisk& own = disks.add("sdb", 64 * kMegabyte);
  makeVolume(own, 0, kOwnNumber, together(kInstallerFiles, kPackages));
  before.emplace(disk);
  EXPECT_EQ(run(), "none");
  EXPECT_TRUE(DiskPicture(disk) == *before);
  EXPECT_EQ(own.files(kPartitionAt).size(), kPackages.size() + 1);
}

TEST_F(LocalInstallationTest, TwoDisksThatAreAlikeStayAsTheyAre) {
  FakeDisk& other = disks.add("sdb", 64 * kMegabyte);
  makeVolume(other, 63, kOwnNumber, together(kInstallerFiles, kPackages));
  const DiskPicture otherBefore(other);
  prepare(kPackages);
  EXPECT_THAT(run(), AllOf(HasSubstr("sda and sdb"), HasSubstr("Remove all but one"),
                           EndsWith(" Nothing was changed on any disk.")));
  EXPECT_TRUE(DiskPicture(disk) == *before);
  EXPECT_TRUE(DiskPicture(other) == otherBefore);
}

TEST_F(LocalInstallationTest, NamesKeepTheirCaseAndAreRecognisedInAny) {
  prepare({{"ROUTING.BDL", "routes"}, {"System.Bdl", "system"}, {"AUTORUN.SCR", "script"}});
  EXPECT_EQ(run(), "none");
  Files files = disk.files(kPartitionAt);
  files.erase(kMarkName);
  EXPECT_EQ(
      files,
      (Files{{"ROUTING.BDL", "routes"}, {"System.Bdl", "system"}, {"autorun.scr", "script"}}));
}

TEST_F(LocalInstallationTest, LeavesBehindWhatIsNoPackage) {
  Files files = kPackages;
  files["readme.txt"] = "text";
  files["system.bdlx"] = "x";
  files[kMarkName] = "from elsewhere";
  prepare(files);
  disk.putFolder(0, "folder.bdl");
  EXPECT_EQ(run(), "none");
  EXPECT_EQ(disk.files(kPartitionAt).size(), kPackages.size() + 1);
  EXPECT_EQ(inspect(), Installation::kComplete);
}

TEST_F(LocalInstallationTest, LargeAndEmptyFilesArriveWhole) {
  std::string large(1'300'000, 'x');
  for (std::size_t i = 0; i < large.size(); ++i) large[i] = static_cast<char>(i * i >> 7);
  const Files files{{"a.bdl", large}, {"b.bdl", std::string(524288, 'y')}, {"autorun.scr", ""}};
  prepare(files);
  EXPECT_EQ(run(), "none");
  EXPECT_EQ(inspect(), Installation::kComplete);
  Files found = disk.files(kPartitionAt);
  found.erase(kMarkName);
  EXPECT_TRUE(found == files);
  const std::vector<std::string> progress{"a.bdl 524288 of 1300000", "a.bdl 1048576 of 1300000",
                                          "a.bdl 1300000 of 1300000", "b.bdl 524288 of 524288"};
  std::vector<std::string> twice = progress;
  twice.insert(twice.end(), progress.begin(), progress.end());
  EXPECT_EQ(console.shown, twice);
}

TEST_F(LocalInstallationTest, WithoutPackagesThereIsASentence) {
  prepare({{"autorun.scr", "script"}});
  expectRefusal("No package is on the disk sda.");
}

TEST_F(LocalInstallationTest, WithoutTheScriptThereIsASentence) {
  prepare(without("autorun.scr"));
  expectRefusal("No autorun.scr is on the disk sda.");
}

TEST_F(LocalInstallationTest, ANameThatTheStoreWouldNotTakeIsRefusedBefore) {
  Files files = kPackages;
  files["SYSTEM~1.BDL"] = "";
  prepare(files);
  expectRefusal("A file of this name is not taken: SYSTEM~1.BDL.");
}

TEST_F(LocalInstallationTest, TooLittleMemoryIsToldWithWhatIsThere) {
  constexpr std::uint64_t kMargin = 3 * 1024 * 1024;
  prepare(kPackages);
  expectRefusal(
      "The packages do not fit into the memory of this PC: they have 5 KB, and there is room for 4 "
      "KB.",
      kMargin + 5011);
  expectRefusal(
      "The packages do not fit into the memory of this PC: they have 5 KB, and there is room for 0 "
      "KB.",
      1000);
  EXPECT_EQ(run(kOwnNumber, kMargin + 5012), "none");
}

// What a store is given it may need as much memory for.
TEST_F(LocalInstallationTest, WhatIsWrittenIsNotHeldAnyMore) {
  HeldFile file{"a.bdl", 9, {{1, 2, 3, 4}, {5, 6, 7}, {8, 9}}};
  FakeStore store;
  std::vector<std::size_t> held;
  store.onCall = [&] {
    std::size_t room = 0;
    for (const auto& piece : file.pieces) room += piece.capacity();
    held.push_back(room);
  };
  writeHeld(file, store, console);
  // Before it is opened, with the pieces, and closed.
  EXPECT_THAT(held, ElementsAre(9, 5, 2, 0, 0));
  EXPECT_EQ(store.content, "\1\2\3\4\5\6\7\x08\x09");
}

// However much memory there is: sizes have 31 bits on the way. The files share what is in them.
TEST_F(LocalInstallationTest, TwoGigabytesAreTooMuch) {
  prepare({{"0.bdl", std::string(8 << 20, 'x')}, {"autorun.scr", ""}});
  const int content = disk.medium.folder(0).entries.at("0.bdl").content;
  for (int i = 1; i < 256; ++i) disk.medium.setEntry(0, {std::to_string(i) + ".bdl", content});
  EXPECT_THAT(
      run(kOwnNumber, std::uint64_t{8} << 30),
      StartsWith("The packages do not fit into the memory of this PC: they have 2097152 KB, "
                 "and there is room for 2097151 KB."));
}

TEST_F(LocalInstallationTest, ADiskThatNothingCanBeInstalledOnIsRefusedBefore) {
  prepare(kPackages);
  disk.obstacle = "it is write-protected";
  EXPECT_EQ(run(),
            "The disk sda cannot be installed: it is write-protected. Change that, or take another "
            "disk. Nothing was changed on any disk.");
  EXPECT_TRUE(DiskPicture(disk) == *before);
}

TEST_F(LocalInstallationTest, ADiskTooSmallIsRefusedBefore) {
  disk.sectorCount = 3 * kMegabyte;
  prepare(kPackages);
  expectRefusal("The disk sda is too small: it has 3 MB, and at least 4 MB are needed.");
}

TEST_F(LocalInstallationTest, PackagesTooLargeForTheDiskAreRefusedBefore) {
  disk.sectorCount = 4 * kMegabyte;
  Files files = kPackages;
  files["large.bdl"] = std::string(4'200'000, 'x');
  prepare(files);
  expectRefusal(
      "The disk sda is too small for the packages: its volume holds 3 MB, and 5 MB are needed.");
}

TEST_F(LocalInstallationTest, AFileThatEndsEarlyIsRefusedBefore) {
  prepare(kPackages);
  console.whenSaid = [this](const std::string& sentence) {
    if (sentence.starts_with("Reading system.bdl")) {
      disk.putFile(0, "system.bdl", std::string(4999, 's'));
      before.emplace(disk);
    }
  };
  expectRefusal("system.bdl cannot be read to its end.");
}

TEST_F(LocalInstallationTest, AFullDiskSaysThatItHasToBeMadeAnew) {
  prepare(kPackages);
  disk.freeBytes = 4000;
  EXPECT_EQ(
      run(),
      "Not enough space on disk sda for system.bdl: 5000 bytes needed, 4000 free. The "
      "installation on the disk sda broke off: make the disk anew on the PC that it was made on.");
  EXPECT_EQ(inspect(), Installation::kBrokenOff);
}

}  // namespace
}  // namespace omniset::test
