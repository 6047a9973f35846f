#include "target/disk/fat16_format.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/byte_cursor.h"
#include "disk_fixture.h"
#include "target/disk/fat_boot_sector.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;

std::uint16_t u16(const Sector& sector, std::size_t at) {
  return ByteReader(std::span(sector).subspan(at)).u16le();
}

std::uint32_t u32(const Sector& sector, std::size_t at) {
  return ByteReader(std::span(sector).subspan(at)).u32le();
}

std::string text(const Sector& sector, std::size_t at, std::size_t length) {
  return std::string(asText(std::span(sector).subspan(at, length)));
}

constexpr Partition kPartition{2048, 63 * 2048, 6};

struct Fat16Format : DiskFixture {
  void format() {
    const auto opened = disks.open(disk);
    formatFat16(*opened, kPartition, asBytes("volume code"), 0xCAFE1234);
  }
  Sector sector(std::uint64_t number) const { return disk.medium.sector(number); }
};

TEST(BootSector, HoldsTheParametersOfTheVolume) {
  const Fat16Plan plan = planFat16(kPartition.count);
  const Sector sector = makeFat16BootSector(asBytes("code"), plan, 2048, 0xCAFE1234);
  EXPECT_THAT(std::vector(sector.begin(), sector.begin() + 3), ElementsAre(0xEB, 0x3C, 0x90));
  EXPECT_EQ(text(sector, 3, 8), "OMNISET ");
  EXPECT_EQ(u16(sector, 11), 512);
  EXPECT_EQ(sector[13], 4);
  EXPECT_EQ(u16(sector, 14), 1);
  EXPECT_EQ(sector[16], 2);
  EXPECT_EQ(u16(sector, 17), 512);
  EXPECT_EQ(u16(sector, 19), 0);
  EXPECT_EQ(sector[21], 0xF8);
  EXPECT_EQ(u16(sector, 22), plan.tableSectors);
  EXPECT_EQ(u16(sector, 24), 63);
  EXPECT_EQ(u16(sector, 26), 255);
  EXPECT_EQ(u32(sector, 28), 2048u);
  EXPECT_EQ(u32(sector, 32), 63u * 2048);
  EXPECT_EQ(sector[36], 0x80);
  EXPECT_EQ(sector[38], 0x29);
  EXPECT_EQ(u32(sector, 39), 0xCAFE1234u);
  EXPECT_EQ(text(sector, 43, 19), "OMNISET    FAT16   ");
  EXPECT_EQ(text(sector, 62, 4), "code");
  EXPECT_EQ(u16(sector, 510), 0xAA55);
}

TEST(BootSector, AVolumeUnder32MegabytesHasItsSizeInTheShortField) {
  const Sector below = makeFat16BootSector({}, planFat16(65535), 63, 1);
  EXPECT_EQ(u16(below, 19), 65535);
  EXPECT_EQ(u32(below, 32), 0u);
  const Sector from = makeFat16BootSector({}, planFat16(65536), 63, 1);
  EXPECT_EQ(u16(from, 19), 0);
  EXPECT_EQ(u32(from, 32), 65536u);
}

TEST(BootSector, TakesCodeUpToTheEndMark) {
  const std::vector<std::uint8_t> code(kVolumeCodeLength, 0xCC);
  const Sector sector = makeFat16BootSector(code, planFat16(10000), 63, 1);
  EXPECT_EQ(sector[509], 0xCC);
  EXPECT_EQ(u16(sector, 510), 0xAA55);
  const std::vector<std::uint8_t> longer(kVolumeCodeLength + 1, 0xCC);
  EXPECT_EQ(failureOf([&] { makeFat16BootSector(longer, planFat16(10000), 63, 1); }),
            "The boot code of the volume is too long.");
}

TEST(BootSector, IsKnownAgain) {
  const Sector ours = makeFat16BootSector({}, planFat16(10000), 63, 1);
  EXPECT_TRUE(looksLikeFat(ours));
  EXPECT_TRUE(isOurVolume(ours));
  Sector others = ours;
  others[3] = 'M';
  EXPECT_TRUE(looksLikeFat(others));
  EXPECT_FALSE(isOurVolume(others));
}

TEST(BootSector, WhatStandsThereMeanwhileIsNoFileSystemButOurs) {
  EXPECT_FALSE(looksLikeFat(makeBegunSector()));
  EXPECT_TRUE(isOurVolume(makeBegunSector()));
  EXPECT_FALSE(isOurVolume(Sector{}));
}

TEST(BootSector, OtherSectorsDoNotLookLikeFat) {
  const Sector fat = makeFat16BootSector({}, planFat16(10000), 63, 1);
  EXPECT_FALSE(looksLikeFat(Sector{}));
  EXPECT_FALSE(looksLikeFat(makeMbr({}, 1, {63, 1000, 6})));
  struct Change {
    std::size_t at;
    std::uint8_t to;
  };
  for (const Change change : {Change{0, 0x33},
                              {11, 1},
                              {12, 1},
                              {12, 0x20},
                              {13, 0},
                              {13, 3},
                              {14, 0},
                              {16, 0},
                              {21, 0},
                              {21, 0xF1},
                              {510, 0},
                              {511, 0}}) {
    Sector sector = fat;
    sector[change.at] = change.to;
    EXPECT_FALSE(looksLikeFat(sector)) << change.at;
  }
}

TEST_F(Fat16Format, WritesTablesAndRootFolder) {
  format();
  const Fat16Plan plan = planFat16(kPartition.count);
  const std::uint64_t root = 2049 + 2 * plan.tableSectors;
  for (const std::uint64_t table : {std::uint64_t{2049}, std::uint64_t{2049} + plan.tableSectors}) {
    EXPECT_EQ(u32(sector(table), 0), 0xFFFFFFF8u);
    EXPECT_EQ(u32(sector(table), 4), 0u);
  }
  EXPECT_EQ(text(sector(root), 0, 12), "OMNISET    \x08");
  EXPECT_EQ(sector(root)[32], 0);
  // Boot sector, two tables and the folder begin with something, and all else is zero.
  EXPECT_EQ(disk.medium.now().sectors.size(), 4u);
}

TEST_F(Fat16Format, ZeroesWhatWasThere) {
  Sector old;
  old.fill(0xFF);
  const Fat16Plan plan = planFat16(kPartition.count);
  const std::uint64_t data = 2049 + 2 * plan.tableSectors + kFat16RootSectors;
  for (std::uint64_t number = 2048; number <= data; ++number) disk.medium.writeSector(number, old);
  format();
  EXPECT_EQ(disk.medium.now().sectors.size(), 5u);
  EXPECT_EQ(sector(data), old);
}

TEST_F(Fat16Format, TheBootSectorComesLastAndAfterAFlush) {
  format();
  const std::vector<std::string>& log = disks.faults.log;
  ASSERT_GE(log.size(), 4u);
  EXPECT_THAT(std::vector(log.end() - 3, log.end()),
              ElementsAre("sda flush", "sda write sectors", "sda flush"));
  const int boot = static_cast<int>(log.size()) - 2;
  disk.medium.writeSector(2048, Sector{});
  disks.faults.restart();
  disks.faults.failAt = boot;
  EXPECT_NE(failureOf([&] { format(); }), "none");
  EXPECT_EQ(sector(2048), Sector{});
}

TEST_F(Fat16Format, BeginsByMakingAnOldVolumeUnknown) {
  format();
  const auto opened = disks.open(disk);
  disks.faults.restart();
  beginFormat(*opened, kPartition);
  EXPECT_EQ(sector(2048), makeBegunSector());
  EXPECT_THAT(disks.faults.log, ElementsAre("sda write sectors", "sda flush"));
}

TEST_F(Fat16Format, StaysWithinTheSmallestAndTheLargestPartition) {
  for (const std::uint64_t size : {kSmallestDisk, 16 * kMegabyte - 1, 4000 * kMegabyte}) {
    FakeDisk& other = disks.add("sdb", size);
    const auto opened = disks.open(other);
    formatFat16(*opened, planPartition("sdb", size), {}, 1);
  }
  // The fixture looks for writes beyond a disk.
}

}  // namespace
}  // namespace omniset::test
