#include "target/disk/partition_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "core/byte_cursor.h"
#include "disk_fixture.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::vector<std::uint8_t> entryOf(const Sector& sector) {
  return {sector.begin() + 446, sector.begin() + 462};
}

Sector withEntry(std::uint8_t status, std::uint8_t type, std::uint32_t first, std::uint32_t count) {
  Sector sector = makeMbr({}, 1, {first, count, type});
  sector[446] = status;
  return sector;
}

TEST(PlanPartition, StartsAtTheFirstMegabyte) {
  const Partition plan = planPartition("sda", 64 * kMegabyte);
  EXPECT_EQ(plan.first, 2048u);
  EXPECT_EQ(plan.count, 63 * kMegabyte);
  EXPECT_EQ(plan.type, 0x06);
}

TEST(PlanPartition, SmallDisksStartAtTheSecondTrack) {
  EXPECT_EQ(planPartition("sda", 16 * kMegabyte - 1).first, 63u);
  EXPECT_EQ(planPartition("sda", 16 * kMegabyte).first, 2048u);
  EXPECT_EQ(planPartition("sda", kSmallestDisk).count, kSmallestDisk - 63);
}

TEST(PlanPartition, IsAtMostTwoGigabytes) {
  EXPECT_EQ(planPartition("sda", 2049 * kMegabyte).count, 2048 * kMegabyte);
  EXPECT_EQ(planPartition("sda", 1ULL << 40).count, 2048 * kMegabyte);
  EXPECT_EQ(planPartition("sda", 2048 * kMegabyte).count, 2047 * kMegabyte);
}

TEST(PlanPartition, TheTypeTellsWhichFieldHoldsTheSize) {
  EXPECT_EQ(planPartition("sda", 2048 + 65535).type, 0x04);
  EXPECT_EQ(planPartition("sda", 2048 + 65536).type, 0x06);
}

TEST(PlanPartition, RefusesADiskThatIsTooSmall) {
  EXPECT_EQ(failureOf([] { planPartition("sda", kSmallestDisk - 1); }),
            "The disk sda is too small: it has 3 MB, and at least 4 MB are needed.");
  EXPECT_THAT(failureOf([] { planPartition("sdb", 0); }), HasSubstr("sdb is too small"));
}

TEST(MakeMbr, HoldsCodeSignatureAndOneActiveEntry) {
  const Sector sector = makeMbr(asBytes("code"), 0x12345678, {2048, 129024, 0x06});
  EXPECT_EQ(asText(std::span(sector).first(4)), "code");
  EXPECT_EQ(ByteReader(std::span(sector).subspan(440)).u32le(), 0x12345678u);
  EXPECT_EQ(ByteReader(std::span(sector).subspan(510)).u16le(), 0xAA55);
  // From 0/32/33 to 8/40/32.
  const std::vector<std::uint8_t> entry{0x80, 32, 33, 0, 0x06, 40,   32, 8,
                                        0,    8,  0,  0, 0,    0xF8, 1,  0};
  EXPECT_EQ(entryOf(sector), entry);
  EXPECT_TRUE(std::all_of(sector.begin() + 462, sector.begin() + 510,
                          [](std::uint8_t byte) { return byte == 0; }));
}

TEST(MakeMbr, HighCylindersTakeTwoBitsOfTheSector) {
  // Cylinder 522 is 0x20A.
  const Sector sector = makeMbr({}, 0, {522 * 255 * 63, 1, 0x06});
  EXPECT_EQ(entryOf(sector)[1], 0);
  EXPECT_EQ(entryOf(sector)[2], 1 | 0x80);
  EXPECT_EQ(entryOf(sector)[3], 0x0A);
}

TEST(MakeMbr, PositionsEndWhereTheyCanNoLongerBeTold) {
  const std::uint32_t last = 1024 * 255 * 63 - 1;
  const Sector within = makeMbr({}, 0, {63, last - 63 + 1, 0x06});
  EXPECT_THAT(std::vector(within.begin() + 451, within.begin() + 454),
              ElementsAre(254, 0xFF, 0xFF));
  const Sector beyond = makeMbr({}, 0, {last + 1, 1000, 0x06});
  EXPECT_THAT(std::vector(beyond.begin() + 447, beyond.begin() + 450),
              ElementsAre(254, 0xFF, 0xFF));
}

TEST(MakeMbr, TakesCodeUpToTheSignature) {
  const std::vector<std::uint8_t> code(kMbrCodeLength, 0xCC);
  const Sector sector = makeMbr(code, 0, {63, 10000, 0x04});
  EXPECT_EQ(sector[439], 0xCC);
  EXPECT_EQ(sector[440], 0);
  const std::vector<std::uint8_t> longer(kMbrCodeLength + 1, 0xCC);
  EXPECT_EQ(failureOf([&] {
              makeMbr(longer, 0, {63, 10000, 0x04});
            }),
            "The boot code of the disk is too long.");
}

TEST(FirstPartition, ComesBackAsItWasMade) {
  for (const std::uint64_t size : {kSmallestDisk, 16 * kMegabyte, 3000 * kMegabyte}) {
    const Partition plan = planPartition("sda", size);
    const auto found = firstPartition(makeMbr({}, 0, plan), size);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->first, plan.first);
    EXPECT_EQ(found->count, plan.count);
    EXPECT_EQ(found->type, plan.type);
  }
}

TEST(FirstPartition, MayBeInactiveAndOfAnyType) {
  EXPECT_TRUE(firstPartition(withEntry(0, 0x83, 63, 100), 1000));
}

TEST(FirstPartition, NeedsTheEndMark) {
  Sector sector = withEntry(0x80, 6, 63, 100);
  sector[510] = 0;
  EXPECT_FALSE(firstPartition(sector, 1000));
  EXPECT_FALSE(firstPartition(Sector{}, 1000));
}

TEST(FirstPartition, MustBeWithinTheDisk) {
  EXPECT_TRUE(firstPartition(withEntry(0x80, 6, 900, 100), 1000));
  EXPECT_FALSE(firstPartition(withEntry(0x80, 6, 900, 101), 1000));
  EXPECT_FALSE(firstPartition(withEntry(0x80, 6, 1000, 1), 1000));
  // A sum that does not fit into 32 bits.
  EXPECT_FALSE(firstPartition(withEntry(0x80, 6, 0xFFFFFFFF, 100), 1000));
}

TEST(FirstPartition, MustBeWhole) {
  EXPECT_FALSE(firstPartition(withEntry(0x80, 0, 63, 100), 1000));
  EXPECT_FALSE(firstPartition(withEntry(0x80, 6, 0, 100), 1000));
  EXPECT_FALSE(firstPartition(withEntry(0x80, 6, 63, 0), 1000));
  EXPECT_FALSE(firstPartition(withEntry(0x42, 6, 63, 100), 1000));
}

TEST(FirstPartition, IsNoContainerOfOthers) {
  for (const int type : {0x05, 0x0F, 0x85}) {
    EXPECT_FALSE(firstPartition(withEntry(0, static_cast<std::uint8_t>(type), 63, 100), 1000));
  }
}

TEST(FirstPartition, IsThatOfTheFirstEntry) {
  Sector sector = makeMbr({}, 0, {63, 100, 6});
  std::copy_n(sector.begin() + 446, 16, sector.begin() + 462);
  std::fill_n(sector.begin() + 446, 16, std::uint8_t{0});
  EXPECT_FALSE(firstPartition(sector, 1000));
}

TEST(OtherEntries, AreAllThatTheFirstPartitionIsNot) {
  EXPECT_FALSE(holdsOtherEntries(withEntry(0x80, 6, 63, 100), 1000));
  Sector second = withEntry(0x80, 6, 63, 100);
  second[446 + 3 * 16 + 4] = 0x83;
  EXPECT_TRUE(holdsOtherEntries(second, 1000));
  EXPECT_TRUE(holdsOtherEntries(withEntry(0, 0x05, 63, 100), 1000));
  EXPECT_TRUE(holdsOtherEntries(withEntry(0x80, 6, 900, 101), 1000));
}

TEST(OtherEntries, NeedATable) {
  Sector sector = withEntry(0x80, 5, 63, 100);
  sector[510] = 0;
  EXPECT_FALSE(holdsOtherEntries(sector, 1000));
  EXPECT_FALSE(holdsOtherEntries(withEntry(0, 0, 0, 0), 1000));
}

TEST(FatTypes, AreThoseOfFat) {
  for (const int type : {0x01, 0x04, 0x06, 0x0B, 0x0C, 0x0E})
    EXPECT_TRUE(isFatType(static_cast<std::uint8_t>(type)));
  for (const int type : {0x00, 0x05, 0x07, 0x82, 0x83, 0xEE})
    EXPECT_FALSE(isFatType(static_cast<std::uint8_t>(type)));
}

}  // namespace
}  // namespace omniset::test
