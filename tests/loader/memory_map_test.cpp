#include "payload/loader/common/memory_map.h"

#include <gmock/gmock.h>

#include <initializer_list>

namespace omniset::loader::test {
namespace {

constexpr std::uint32_t kMega = 0x100000;

MemoryMap mapOf(std::initializer_list<MemoryEntry> entries) {
  MemoryMap map;
  for (const MemoryEntry& entry : entries) EXPECT_TRUE(map.add(entry));
  return map;
}

MemoryEntry usable(std::uint32_t start, std::uint32_t size) {
  return {.start = start, .size = size, .type = kUsableMemory};
}

MemoryEntry reserved(std::uint32_t start, std::uint32_t size) {
  return {.start = start, .size = size, .type = kReservedMemory};
}

void expectRange(const MemoryRange& range, std::uint32_t start, std::uint32_t end) {
  EXPECT_EQ(range.start, start);
  EXPECT_EQ(range.end, end);
}

TEST(MemoryMap, OnePieceIsUsableToItsEnd) {
  const MemoryMap map = mapOf({usable(0, 0x9FC00), usable(kMega, 31 * kMega)});
  EXPECT_EQ(map.usableEnd(kMega), 32 * kMega);
  EXPECT_EQ(map.usableEnd(5 * kMega), 32 * kMega);
}

TEST(MemoryMap, WhereNothingIsToldNothingIsUsable) {
  const MemoryMap map = mapOf({usable(kMega, kMega)});
  EXPECT_EQ(map.usableEnd(2 * kMega), 2 * kMega);
  EXPECT_EQ(map.usableEnd(0xA0000), 0xA0000u);
  EXPECT_EQ(mapOf({}).usableEnd(kMega), kMega);
}

TEST(MemoryMap, PiecesThatTouchAreOneInAnyOrder) {
  const MemoryMap map =
      mapOf({usable(3 * kMega, kMega), usable(kMega, kMega), usable(2 * kMega, kMega)});
  EXPECT_EQ(map.usableEnd(kMega), 4 * kMega);
}

TEST(MemoryMap, ReservedMemoryWithinAUsablePieceIsNotUsed) {
  const MemoryMap map = mapOf({reserved(8 * kMega, kMega), usable(kMega, 15 * kMega)});
  EXPECT_EQ(map.usableEnd(kMega), 8 * kMega);
  EXPECT_EQ(map.usableEnd(8 * kMega), 8 * kMega);
  EXPECT_EQ(map.usableEnd(8 * kMega + 1), 8 * kMega + 1);
  EXPECT_EQ(map.usableEnd(9 * kMega), 16 * kMega);
}

TEST(MemoryMap, AllButOneTypeIsReserved) {
  for (const std::uint32_t type : {0u, 2u, 3u, 4u, 5u, 0xFFFFFFFFu}) {
    MemoryMap map = mapOf({usable(kMega, 3 * kMega)});
    map.add({.start = 2 * kMega, .size = kMega, .type = type});
    EXPECT_EQ(map.usableEnd(kMega), 2 * kMega) << type;
  }
}

TEST(MemoryMap, MemoryBeyond4GigabytesDoesNotCount) {
  const MemoryMap map =
      mapOf({{.start = kMega, .startHigh = 1, .size = kMega, .type = kUsableMemory}});
  EXPECT_EQ(map.usableEnd(kMega), kMega);
}

TEST(MemoryMap, APieceAcross4GigabytesCountsBelow) {
  constexpr std::uint32_t kLast = 0xFFFFFFFF;
  EXPECT_EQ(mapOf({usable(0xF0000000, 0x20000000)}).usableEnd(0xF0000000), kLast);
  const MemoryMap large =
      mapOf({{.start = kMega, .size = 0, .sizeHigh = 3, .type = kUsableMemory}});
  EXPECT_EQ(large.usableEnd(kMega), kLast);
}

TEST(MemoryMap, EmptyEntriesTakeNoRoom) {
  MemoryMap map;
  for (std::size_t i = 0; i < 2 * MemoryMap::kMost; ++i) EXPECT_TRUE(map.add(usable(kMega, 0)));
  EXPECT_TRUE(map.add(usable(kMega, kMega)));
  EXPECT_EQ(map.usableEnd(kMega), 2 * kMega);
}

TEST(MemoryMap, SaysWhenThereIsNoRoomForMore) {
  MemoryMap map;
  for (std::size_t i = 0; i < MemoryMap::kMost; ++i) EXPECT_TRUE(map.add(usable(kMega, kMega)));
  EXPECT_FALSE(map.add(reserved(kMega, kMega)));
  EXPECT_EQ(map.usableEnd(kMega), 2 * kMega);
}

TEST(MemoryMap, EverythingFromAnAddressOnCanBeReserved) {
  MemoryMap map = mapOf({usable(kMega, 31 * kMega), usable(0x80000000, kMega)});
  map.add({.start = 16 * kMega, .sizeHigh = 1, .type = kReservedMemory});
  EXPECT_EQ(map.usableEnd(kMega), 16 * kMega);
  EXPECT_EQ(map.usableEnd(20 * kMega), 20 * kMega);
  EXPECT_EQ(map.usableEnd(0x80000000), 0x80000000u);
}

TEST(MemoryMap, OnceClearedKnowsNothing) {
  MemoryMap map = mapOf({usable(kMega, kMega), reserved(3 * kMega, kMega)});
  map.clear();
  EXPECT_EQ(map.usableEnd(kMega), kMega);
  map.add(usable(kMega, 4 * kMega));
  EXPECT_EQ(map.usableEnd(kMega), 5 * kMega);
}

TEST(MemoryMap, TheLargestRangeLiesBetweenFloorAndCeiling) {
  const MemoryMap map = mapOf({usable(kMega, 31 * kMega)});
  expectRange(map.largestUsable(6 * kMega, 0x38000000), 6 * kMega, 32 * kMega);
  expectRange(map.largestUsable(6 * kMega, 20 * kMega), 6 * kMega, 20 * kMega);
}

TEST(MemoryMap, TheLargestRangeMayBeAboveAHole) {
  const MemoryMap map = mapOf({usable(kMega, 14 * kMega), usable(16 * kMega, 16 * kMega)});
  expectRange(map.largestUsable(6 * kMega, 0x38000000), 16 * kMega, 32 * kMega);
}

TEST(MemoryMap, TheLargestRangeMayBeBelowAHole) {
  const MemoryMap map = mapOf({usable(kMega, 14 * kMega), usable(16 * kMega, 2 * kMega)});
  expectRange(map.largestUsable(6 * kMega, 0x38000000), 6 * kMega, 15 * kMega);
}

TEST(MemoryMap, TheLargestRangeMayBeginBehindReservedMemory) {
  const MemoryMap map = mapOf({usable(kMega, 31 * kMega), reserved(7 * kMega, 0x1234)});
  expectRange(map.largestUsable(6 * kMega, 0x38000000), 7 * kMega + 0x2000, 32 * kMega);
}

TEST(MemoryMap, TheLargestRangeHasWholePages) {
  const MemoryMap map = mapOf({usable(kMega + 1, kMega)});
  expectRange(map.largestUsable(kMega, 0x38000000), kMega + kPage, 2 * kMega);
  expectRange(mapOf({usable(kMega, kMega - 1)}).largestUsable(kMega, 0x38000000), kMega,
              2 * kMega - kPage);
}

TEST(MemoryMap, WithoutUsableMemoryTheLargestRangeIsEmpty) {
  EXPECT_EQ(mapOf({}).largestUsable(kMega, 0x38000000).size(), 0u);
  EXPECT_EQ(mapOf({usable(kMega, 5 * kMega)}).largestUsable(6 * kMega, 0x38000000).size(), 0u);
  EXPECT_EQ(mapOf({usable(kMega, 9 * kMega)}).largestUsable(6 * kMega, kMega).size(), 0u);
  EXPECT_EQ(mapOf({usable(kMega, 100)}).largestUsable(kMega, 0x38000000).size(), 0u);
}

}  // namespace
}  // namespace omniset::loader::test
