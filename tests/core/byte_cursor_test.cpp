#include "core/byte_cursor.h"

#include <gmock/gmock.h>

#include <array>
#include <vector>

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::array<std::uint8_t, 7> kSeven{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD};

TEST(ByteReader, ReadsLowByteFirst) {
  ByteReader reader(kSeven);
  EXPECT_EQ(reader.u8(), 0x01);
  EXPECT_EQ(reader.u16le(), 0x4523);
  EXPECT_EQ(reader.u32le(), 0xCDAB8967u);
  EXPECT_EQ(reader.left(), 0u);
  EXPECT_TRUE(reader.ok());
}

TEST(ByteReader, KeepsTheHighestBitOfA32BitNumber) {
  constexpr std::array<std::uint8_t, 4> kOnes{0xFF, 0xFF, 0xFF, 0xFF};
  ByteReader reader(kOnes);
  EXPECT_EQ(reader.u32le(), 0xFFFFFFFFu);
}

TEST(ByteReader, ReadsHighByteFirst) {
  ByteReader reader(kSeven);
  EXPECT_EQ(reader.u16be(), 0x0123);
  EXPECT_EQ(reader.u32be(), 0x456789ABu);
  EXPECT_EQ(reader.u16be(), 0);
  EXPECT_EQ(reader.u32be(), 0u);
  EXPECT_FALSE(reader.ok());
}

TEST(ByteReader, TakesBytesInPlace) {
  ByteReader reader(kSeven);
  reader.u8();
  const auto taken = reader.take(3);
  EXPECT_EQ(taken.data(), kSeven.data() + 1);
  EXPECT_THAT(taken, ElementsAre(0x23, 0x45, 0x67));
  EXPECT_EQ(reader.left(), 3u);
}

TEST(ByteReader, TakesAllThatIsLeft) {
  ByteReader reader(kSeven);
  EXPECT_EQ(reader.take(7).size(), 7u);
  EXPECT_TRUE(reader.ok());
}

TEST(ByteReader, TakingNothingFromNothingIsNoFailure) {
  ByteReader reader({});
  EXPECT_THAT(reader.take(0), IsEmpty());
  EXPECT_TRUE(reader.ok());
}

TEST(ByteReader, OneByteTooManyYieldsZeroAndSaysSo) {
  ByteReader reader{std::span(kSeven).first(3)};
  EXPECT_EQ(reader.u32le(), 0u);
  EXPECT_FALSE(reader.ok());
}

TEST(ByteReader, StaysStoppedAfterAReadPastTheEnd) {
  ByteReader reader{std::span(kSeven).first(3)};
  reader.u32le();
  EXPECT_EQ(reader.u8(), 0);
  EXPECT_EQ(reader.u16le(), 0);
  EXPECT_THAT(reader.take(1), IsEmpty());
  EXPECT_THAT(reader.take(0), IsEmpty());
  EXPECT_FALSE(reader.ok());
}

TEST(ByteReader, ACountNearTheTopOfItsRangeIsRefused) {
  ByteReader reader(kSeven);
  reader.u8();
  EXPECT_THAT(reader.take(SIZE_MAX), IsEmpty());
  EXPECT_FALSE(reader.ok());
}

TEST(ByteWriter, WritesLowByteFirst) {
  std::array<std::uint8_t, 7> bytes{};
  ByteWriter writer(bytes);
  writer.u8(0x01);
  writer.u16le(0x4523);
  writer.u32le(0xCDAB8967);
  EXPECT_EQ(bytes, kSeven);
  EXPECT_EQ(writer.written(), 7u);
  EXPECT_TRUE(writer.ok());
}

TEST(ByteWriter, WritesHighByteFirst) {
  std::array<std::uint8_t, 3> bytes{};
  ByteWriter writer(bytes);
  writer.u16be(0x0123);
  writer.u16be(0x4567);
  EXPECT_THAT(bytes, ElementsAre(0x01, 0x23, 0));
  EXPECT_FALSE(writer.ok());
}

TEST(ByteWriter, PutsBytesAndTexts) {
  std::array<std::uint8_t, 6> bytes{};
  ByteWriter writer(bytes);
  writer.put(std::span(kSeven).first(2));
  writer.put("OFFR");
  EXPECT_THAT(bytes, ElementsAre(0x01, 0x23, 'O', 'F', 'F', 'R'));
}

TEST(ByteWriter, PuttingNothingIntoNothingIsNoFailure) {
  ByteWriter writer({});
  writer.put("");
  EXPECT_TRUE(writer.ok());
  EXPECT_EQ(writer.written(), 0u);
}

TEST(ByteWriter, WhatDoesNotFitIsNotWrittenInPart) {
  std::array<std::uint8_t, 4> bytes{9, 9, 9, 9};
  ByteWriter writer{std::span(bytes).first(3)};
  writer.u32le(0x11223344);
  EXPECT_THAT(bytes, ElementsAre(9, 9, 9, 9));
  EXPECT_EQ(writer.written(), 0u);
  EXPECT_FALSE(writer.ok());
}

TEST(ByteWriter, WritesNothingMoreAfterAWritePastTheEnd) {
  std::array<std::uint8_t, 3> bytes{9, 9, 9};
  ByteWriter writer(bytes);
  writer.u8(1);
  writer.put("YACK");
  writer.u8(2);
  EXPECT_THAT(bytes, ElementsAre(1, 9, 9));
  EXPECT_EQ(writer.written(), 1u);
  EXPECT_FALSE(writer.ok());
}

TEST(ByteCursor, ReadsBackWhatWasWritten) {
  std::vector<std::uint8_t> bytes(7);
  ByteWriter writer(bytes);
  writer.u16le(0xFFFE);
  writer.u32le(0x80000001);
  writer.u8(0x7F);
  ByteReader reader(bytes);
  EXPECT_EQ(reader.u16le(), 0xFFFE);
  EXPECT_EQ(reader.u32le(), 0x80000001u);
  EXPECT_EQ(reader.u8(), 0x7F);
}

TEST(ByteCursor, BytesSeenAsTextKeepZeros) {
  constexpr std::array<std::uint8_t, 3> kBytes{'a', 0, 'b'};
  EXPECT_EQ(asText(kBytes), std::string_view("a\0b", 3));
}

}  // namespace
}  // namespace omniset::test
