#include "payload/loader/disk/fat_volume.h"

#include <gmock/gmock.h>

#include <memory>
#include <numeric>

#include "fat_image.h"
#include "payload/loader/common/low_memory.h"
#include "payload/loader/common/numbers.h"

namespace omniset::loader::test {
namespace {

using ::testing::ElementsAre;

constexpr const char* kStored = "LINUX      ";
constexpr const char* kMissing = "linux is not on this disk.";
constexpr const char* kDamaged = "linux is damaged on this disk.";

std::vector<std::uint32_t> clustersFrom(std::uint32_t first, std::size_t count) {
  std::vector<std::uint32_t> clusters(count);
  std::iota(clusters.begin(), clusters.end(), first);
  return clusters;
}

// Each behind a gap, the last ones first.
std::vector<std::uint32_t> scatteredFrom(std::uint32_t first, std::size_t count) {
  std::vector<std::uint32_t> clusters;
  for (std::size_t i = count; i > 0; --i) {
    clusters.push_back(first + static_cast<std::uint32_t>(i) * 2);
  }
  return clusters;
}

class FatVolumeTest : public ::testing::Test {
 protected:
  FatImage& make(const FatShape& shape) {
    drive.reset();
    drive = std::make_unique<FakeDrive>(pc);
    image = std::make_unique<FatImage>(*drive, shape);
    return *image;
  }

  void openVolume() { volume.open(image->bootSector()); }

  std::vector<std::uint8_t> fetch(const char* name) {
    std::vector<std::uint8_t> all;
    openVolume();
    volume.openFile(name);
    while (const std::uint32_t count = volume.readFile()) {
      EXPECT_LE(count, kTransferRoom);
      const auto bytes = pc.bytes(kTransferAt, count);
      all.insert(all.end(), bytes.begin(), bytes.end());
    }
    return all;
  }

  std::string failureOfFetching(const char* name) {
    return failureOf([&] { fetch(name); });
  }

  FakePc pc{0x40000};
  std::unique_ptr<FakeDrive> drive;
  std::unique_ptr<FatImage> image;
  FatVolume volume;
};

TEST_F(FatVolumeTest, AFileComesWholeWhateverItsSize) {
  for (const std::size_t size :
       {1, 511, 512, 513, 1024, 0xFFFF, 0x10000, 0x10001, 0x20000, 200001}) {
    make({}).addFile(kStored, contentOf(size), clustersFrom(2, (size + 511) / 512));
    EXPECT_EQ(fetch("linux"), contentOf(size)) << size;
  }
}

TEST_F(FatVolumeTest, AnEmptyFileHasNothing) {
  make({}).addFile(kStored, {}, {});
  EXPECT_EQ(fetch("linux").size(), 0u);
}

TEST_F(FatVolumeTest, EntriesOf12BitsMayLieAcrossSectorsOfTheTable) {
  // Those of the clusters 341 and 682 do.
  for (const std::uint32_t first : {338u, 339u, 340u, 341u, 679u, 680u, 681u, 682u}) {
    make({}).addFile(kStored, contentOf(6 * 512), clustersFrom(first, 6));
    EXPECT_EQ(fetch("linux"), contentOf(6 * 512)) << first;
  }
}

TEST_F(FatVolumeTest, ScatteredFilesComeWhole) {
  for (const std::uint32_t clusters : {2000u, 4084u, 4085u, 65524u}) {
    for (const std::uint32_t clusterSectors : {1u, 4u, 128u}) {
      const std::size_t count = 300 / clusterSectors + 10;
      const std::size_t size = count * clusterSectors * 512 - 100;
      make({.clusters = clusters, .clusterSectors = clusterSectors})
          .addFile(kStored, contentOf(size), scatteredFrom(clusters - 1000, count));
      EXPECT_TRUE(fetch("linux") == contentOf(size)) << clusters << " of " << clusterSectors;
    }
  }
}

TEST_F(FatVolumeTest, TheLastClusterOfTheLargestVolumeIsReached) {
  make({.clusters = 65524, .clusterSectors = 128}).addFile(kStored, contentOf(0x18000), {65525, 2});
  EXPECT_EQ(fetch("linux"), contentOf(0x18000));
  EXPECT_GT(image->sectorOf(65525), 65523u * 128);
}

// Where a volume has so many, numbers that stand for no cluster elsewhere are ordinary.
TEST_F(FatVolumeTest, TheLastClustersOfTheLargestVolumeWith12BitsAreReached) {
  make({.clusters = 4084}).addFile(kStored, contentOf(3000), clustersFrom(0xFF0, 6));
  EXPECT_EQ(fetch("linux"), contentOf(3000));
}

TEST_F(FatVolumeTest, AFileMayFillItsVolume) {
  make({.clusters = 10}).addFile(kStored, contentOf(5120), clustersFrom(2, 10));
  EXPECT_EQ(fetch("linux"), contentOf(5120));
}

TEST_F(FatVolumeTest, WhatLiesTogetherIsReadAtOnceUpToTheRoomForIt) {
  make({}).addFile(kStored, contentOf(200 * 512), clustersFrom(10, 200));
  fetch("linux");
  EXPECT_THAT(drive->reads, ElementsAre(DriveRead{image->sectorOf(10), 128},
                                        DriveRead{image->sectorOf(138), 72}));
}

TEST_F(FatVolumeTest, APieceApartIsReadApart) {
  make({.clusterSectors = 2}).addFile(kStored, contentOf(5 * 1024), {10, 11, 50, 52, 53});
  fetch("linux");
  EXPECT_THAT(drive->reads,
              ElementsAre(DriveRead{image->sectorOf(10), 4}, DriveRead{image->sectorOf(50), 2},
                          DriveRead{image->sectorOf(52), 4}));
}

TEST_F(FatVolumeTest, HiddenSectorsAndReservedOnesAreBeforeIt) {
  for (const std::uint32_t tables : {1u, 2u}) {
    make({.tables = tables, .reserved = 8, .hidden = 5'000'000})
        .addFile(kStored, contentOf(5000), scatteredFrom(100, 10));
    EXPECT_EQ(fetch("linux"), contentOf(5000));
  }
}

TEST_F(FatVolumeTest, NamesAreOfAnyCase) {
  FatImage& volumeImage = make({});
  volumeImage.addFile("SYSLINUXCFG", contentOf(80), {5});
  volumeImage.addFile(kStored, contentOf(90), {6});
  for (const char* name : {"syslinux.cfg", "SYSLINUX.CFG", "SysLinux.Cfg"}) {
    EXPECT_EQ(fetch(name).size(), 80u) << name;
  }
  for (const char* name : {"linux", "LINUX", "linux."}) EXPECT_EQ(fetch(name).size(), 90u) << name;
}

TEST_F(FatVolumeTest, NamesThatNoFileCanHaveAreOfNone) {
  make({}).addFile("SYSLINUXCFG", contentOf(80), {5});
  const char* const names[] = {"",   ".", "syslinux",      "syslinuxcfg",  "syslinux.cf",
                               "..", "/", "syslinux.cfgs", "syslinux.c.g", "syslinux1.cfg"};
  for (const char* name : names) {
    EXPECT_EQ(failureOfFetching(name), name + std::string(" is not on this disk."));
  }
}

TEST_F(FatVolumeTest, AFileIsFoundBehindWhatIsNoFile) {
  FatImage& volumeImage = make({});
  volumeImage.addEntry("LINUX      ", kLabel, 0, 0);
  volumeImage.addEntry("\xE5INUX      ", kPlainFile, 9, 300);
  volumeImage.addEntry("\x41l\0i\0n\0u\0x\0", kLongName, 0, 0xFFFFFFFF);
  volumeImage.addEntry("LINUX      ", kDirectory, 9, 0);
  volumeImage.addEntry("LINUX   CFG", kPlainFile, 9, 300);
  EXPECT_EQ(failureOfFetching("linux"), kMissing);
  volumeImage.addFile(kStored, contentOf(700), {20, 30});
  EXPECT_EQ(fetch("linux"), contentOf(700));
}

TEST_F(FatVolumeTest, ADeletedFileIsNone) {
  make({}).addFile("\xE5INUX      ", contentOf(700), {20, 30});
  EXPECT_EQ(failureOfFetching("\xE5inux"), "\xE5inux is not on this disk.");
}

TEST_F(FatVolumeTest, ARootDirectoryHasMoreThanASector) {
  FatImage& volumeImage = make({.rootEntries = 100});
  for (int i = 0; i < 99; ++i) volumeImage.addEntry("PACKAGE BDL", kPlainFile, 9, 300);
  volumeImage.addFile(kStored, contentOf(700), {20, 30});
  EXPECT_EQ(fetch("linux"), contentOf(700));
}

TEST_F(FatVolumeTest, BehindTheFirstUnusedEntryNothingIsLookedFor) {
  FatImage& volumeImage = make({});
  volumeImage.addEntry(std::string(11, '\0'), 0, 0, 0);
  volumeImage.addFile(kStored, contentOf(700), {20, 30});
  EXPECT_EQ(failureOfFetching("linux"), kMissing);
}

TEST_F(FatVolumeTest, AFullDirectoryEndsWhereTheFirstSectorSays) {
  FatImage& volumeImage = make({.rootEntries = 16});
  for (int i = 0; i < 16; ++i) volumeImage.addEntry("PACKAGE BDL", kPlainFile, 9, 300);
  volumeImage.addEntry(kStored, kPlainFile, 9, 300);  // in the first cluster
  EXPECT_EQ(failureOfFetching("linux"), kMissing);
}

TEST_F(FatVolumeTest, AChainThatGoesWrongIsDamage) {
  for (const std::uint32_t clusters : {1000u, 5000u}) {
    const std::uint32_t special = clusters < 4085 ? 0xFF0 : 0xFFF0;
    // Free, reserved, behind the last, reserved, bad, an end too soon.
    for (const std::uint32_t next :
         {0u, 1u, clusters + 2, special, special + 7, special + 8, special + 15}) {
      FatImage& volumeImage = make({.clusters = clusters});
      volumeImage.addFile(kStored, contentOf(2000), {20, 30, 40, 50});
      volumeImage.setNext(30, next);
      EXPECT_EQ(failureOfFetching("linux"), kDamaged) << clusters << " " << next;
    }
  }
}

TEST_F(FatVolumeTest, AFileWithAChainThatGoesRoundInCirclesIsDamaged) {
  for (const std::uint32_t clusters : {1000u, 5000u}) {
    FatImage& volumeImage = make({.clusters = clusters});
    volumeImage.addFile(kStored, contentOf(2000), {20, 30, 40, 50});
    volumeImage.setNext(50, 30);
    EXPECT_EQ(failureOfFetching("linux"), kDamaged);
    volumeImage.setNext(20, 20);
    EXPECT_EQ(failureOfFetching("linux"), kDamaged);
  }
}

TEST_F(FatVolumeTest, AnyOfTheEndMarksEndsAChain) {
  for (const std::uint32_t clusters : {1000u, 5000u}) {
    FatImage& volumeImage = make({.clusters = clusters});
    volumeImage.addFile(kStored, contentOf(600), {20, 30});
    for (std::uint32_t mark = volumeImage.endMark() - 7; mark <= volumeImage.endMark(); ++mark) {
      volumeImage.setNext(30, mark);
      EXPECT_EQ(fetch("linux"), contentOf(600)) << mark;
    }
  }
}

TEST_F(FatVolumeTest, AFirstClusterThatIsNoneIsDamage) {
  for (const std::uint32_t first : {0u, 1u, 1002u, 0xFFFFu}) {
    make({}).addEntry(kStored, kPlainFile, first, 100);
    EXPECT_EQ(failureOfFetching("linux"), kDamaged) << first;
  }
}

TEST_F(FatVolumeTest, AFileLargerThanItsVolumeIsDamaged) {
  FatImage& volumeImage = make({});
  volumeImage.addEntry(kStored, kPlainFile, 20, 0xFFFFFFFF);
  volumeImage.setNext(20, 20);
  EXPECT_EQ(failureOfFetching("linux"), kDamaged);
  EXPECT_TRUE(drive->reads.empty());
}

struct WrongNumber {
  std::size_t at;
  std::uint8_t value;
};

TEST_F(FatVolumeTest, AFirstSectorThatMakesNoSenseIsOfNoVolume) {
  // Sector size, cluster size, reserved sectors, tables, root entries, sectors, table size.
  for (const auto& [at, value] : {WrongNumber{12, 0},
                                  {12, 8},
                                  {13, 0},
                                  {13, 3},
                                  {13, 192},
                                  {14, 0},
                                  {16, 0},
                                  {17, 0},
                                  {22, 0},
                                  {22, 2}}) {
    make({}).bootSector()[at] = value;
    EXPECT_EQ(failureOf([&] { openVolume(); }),
              "This disk has no file system of the kinds FAT12 and FAT16.")
        << at << " " << int{value};
  }
}

TEST_F(FatVolumeTest, OfTooFewOrTooManySectorsIsNone) {
  for (const std::uint32_t sectors : {0u, 1u, 11u, 65525u + 11, 0xFFFFFFFFu}) {
    SectorBytes& bytes = make({}).bootSector();
    putNumber(&bytes[19], std::uint16_t{0});
    putNumber(&bytes[32], sectors);
    EXPECT_NE(failureOf([&] { openVolume(); }), "") << sectors;
  }
}

TEST_F(FatVolumeTest, OfMoreThan65524ClustersIsNone) {
  make({.clusters = 65525});
  EXPECT_NE(failureOf([&] { openVolume(); }), "");
}

// The entry of the cluster 341 is the first that ends in the table's second sector.
TEST_F(FatVolumeTest, AllOfTheLastEntryHasToBeInTheTable) {
  SectorBytes& bytes = make({.clusters = 338}).bootSector();
  const auto sectors = numberAt<std::uint16_t>(&bytes[19]);
  putNumber(&bytes[19], static_cast<std::uint16_t>(sectors + 1));
  EXPECT_EQ(failureOf([&] { openVolume(); }), "");
  putNumber(&bytes[19], static_cast<std::uint16_t>(sectors + 2));
  EXPECT_NE(failureOf([&] { openVolume(); }), "");
}

TEST_F(FatVolumeTest, WhatWasReadOfAnotherVolumeIsForgotten) {
  make({}).addFile(kStored, contentOf(700), {20, 30});
  fetch("linux");
  make({}).addFile(kStored, contentOf(100), {40});
  EXPECT_EQ(fetch("linux"), contentOf(100));
}

TEST_F(FatVolumeTest, TheFirstSectorTellsTheSerialNumber) {
  EXPECT_EQ(serialNumberIn(make({}).bootSector()), 0x1234ABCDu);
}

}  // namespace
}  // namespace omniset::loader::test
