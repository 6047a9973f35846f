#include "packages/package_reader.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "expect_bad_file.h"
#include "tests/tools/bdl_builder.h"
#include "tests/tools/memory_reader.h"

namespace omniset::test {
namespace {

class PackageReader : public testing::Test {
 protected:
  // A reader over these bytes that wants section types 1, 2 and 3.
  MemoryReader& over(std::string bytes) {
    bytes_ = std::move(bytes);
    reader_ = std::make_unique<MemoryReader>(kPackageMagic, bytes_);
    for (std::uint16_t type = 1; type <= 3; ++type) reader_->want(type);
    return *reader_;
  }

  static std::string readText(GenericReader& reader, std::size_t count) {
    std::string text(count, '?');
    reader.read(reinterpret_cast<std::uint8_t*>(text.data()), count);
    return text;
  }

 private:
  std::string bytes_;
  std::unique_ptr<MemoryReader> reader_;
};

TEST_F(PackageReader, MagicIsStoredLowestByteFirst) {
  EXPECT_EQ(bdlFile("").substr(0, 4), "\x1E\xF1\xD0\xBA");
  EXPECT_FALSE(over(std::string("\x1E\xF1\xD0\xBA\0\0\0\0", 8)).nextSection());
}

TEST_F(PackageReader, OtherMagicIsRefused) {
  EXPECT_BAD_FILE(over("PK\x03\x04....").nextSection(), "wrong magic");
}

TEST_F(PackageReader, FileShorterThanItsHeaderIsAReadError) {
  EXPECT_BAD_FILE(over("").nextSection(), "read error");
  EXPECT_BAD_FILE(over(bdlFile("").substr(0, 7)).nextSection(), "read error");
}

TEST_F(PackageReader, PackageOfLengthZeroHasNoSectionsHoweverOftenAsked) {
  MemoryReader& reader = over(bdlFile(""));
  EXPECT_FALSE(reader.nextSection());
  EXPECT_FALSE(reader.nextSection());
  EXPECT_EQ(reader.sectionType(), 0);
}

TEST_F(PackageReader, LengthZeroHidesWhatFollows) {
  EXPECT_FALSE(over(bdlFile(bdlSection(1, "abc"), 0)).nextSection());
}

TEST_F(PackageReader, SectionsComeInFileOrderWithTheirSizes) {
  MemoryReader& reader =
      over(bdlFile(bdlSection(3, "abc") + bdlSection(1, "") + bdlSection(2, "x")));
  ASSERT_TRUE(reader.nextSection());
  EXPECT_EQ(reader.sectionType(), 3);
  EXPECT_EQ(reader.sectionSize(), 3u);
  ASSERT_TRUE(reader.nextSection());
  EXPECT_EQ(reader.sectionType(), 1);
  EXPECT_EQ(reader.sectionSize(), 0u);
  ASSERT_TRUE(reader.nextSection());
  EXPECT_EQ(reader.sectionType(), 2);
  EXPECT_EQ(readText(reader, 1), "x");
  EXPECT_FALSE(reader.nextSection());
  EXPECT_EQ(reader.sectionType(), 0);
  EXPECT_EQ(reader.sectionSize(), 0u);
  EXPECT_EQ(reader.unread(), 0u);
}

TEST_F(PackageReader, UnwantedSectionsArePassedOver) {
  MemoryReader& reader = over(bdlFile(bdlSection(4, "files") + bdlSection(0xFFFF, "") +
                                      bdlSection(2, "text") + bdlSection(9, "more")));
  ASSERT_TRUE(reader.nextSection());
  EXPECT_EQ(reader.sectionType(), 2);
  EXPECT_EQ(readText(reader, 4), "text");
  EXPECT_FALSE(reader.nextSection());
}

TEST_F(PackageReader, SectionOfTypeZeroIsPassedOverLikeAnyOther) {
  MemoryReader& reader = over(bdlFile(bdlSection(0, "zero") + bdlSection(2, "text")));
  ASSERT_TRUE(reader.nextSection());
  EXPECT_EQ(readText(reader, 4), "text");
  EXPECT_FALSE(reader.nextSection());
}

TEST_F(PackageReader, ReaderThatWantsNothingFindsTheEnd) {
  const std::string bytes = bdlFile(bdlSection(1, "abc"));
  MemoryReader reader(kPackageMagic, bytes);
  EXPECT_FALSE(reader.nextSection());
}

TEST_F(PackageReader, RestOfAHalfReadSectionIsPassedOver) {
  MemoryReader& reader = over(bdlFile(bdlSection(1, "abcdef") + bdlSection(2, "text")));
  ASSERT_TRUE(reader.nextSection());
  EXPECT_EQ(readText(reader, 2), "ab");
  reader.skip(1);
  EXPECT_EQ(reader.unread(), 3u);
  ASSERT_TRUE(reader.nextSection());
  EXPECT_EQ(readText(reader, 4), "text");
}

TEST_F(PackageReader, OneToFiveTrailingBytesMakeTheLengthInvalid) {
  for (std::size_t count = 1; count <= 5; ++count) {
    MemoryReader& reader = over(bdlFile(bdlSection(1, "abc") + std::string(count, 'g')));
    ASSERT_TRUE(reader.nextSection());
    EXPECT_BAD_FILE(reader.nextSection(), "invalid length of file");
  }
}

TEST_F(PackageReader, SixTrailingBytesAreASectionHeader) {
  MemoryReader& reader = over(bdlFile(bdlSection(1, "abc") + std::string("\x09\0\0\0\0\0", 6)));
  ASSERT_TRUE(reader.nextSection());
  EXPECT_FALSE(reader.nextSection());
  MemoryReader& garbage = over(bdlFile(bdlSection(1, "abc") + "gggggg"));
  ASSERT_TRUE(garbage.nextSection());
  EXPECT_BAD_FILE(garbage.nextSection(), "invalid length of section");
}

TEST_F(PackageReader, SectionBeyondTheDeclaredLengthIsRefusedThoughTheFileIsLongEnough) {
  const std::string section = bdlSection(1, std::string(40, 'x'));
  const auto declared = static_cast<std::uint32_t>(section.size() - 1);
  EXPECT_BAD_FILE(over(bdlFile(section, declared)).nextSection(), "invalid length of section");
}

TEST_F(PackageReader, BytesBehindTheDeclaredLengthAreNotLookedAt) {
  MemoryReader& reader = over(bdlFile(bdlSection(1, "abc")) + "anything");
  ASSERT_TRUE(reader.nextSection());
  EXPECT_FALSE(reader.nextSection());
}

TEST_F(PackageReader, HugeSectionSizeDoesNotWrap) {
  // 0xFFFFFFFA + 6 is 0 in 32 bits, and would let the section pass as one of no bytes.
  for (const std::uint32_t size : {0xFFFFFFFAu, 0xFFFFFFFFu, 0x80000000u}) {
    MemoryReader& reader = over(bdlFile(bdlSection(9, "", size) + bdlSection(1, "abc")));
    EXPECT_BAD_FILE(reader.nextSection(), "invalid length of section");
  }
}

TEST_F(PackageReader, HugeDeclaredLengthEndsInAReadError) {
  MemoryReader& reader = over(bdlFile(bdlSection(1, "abc"), 0xFFFFFFFF));
  ASSERT_TRUE(reader.nextSection());
  EXPECT_BAD_FILE(reader.nextSection(), "read error");
}

TEST_F(PackageReader, SkippingPastTheEndOfTheStreamEndsInAReadError) {
  MemoryReader& reader = over(bdlFile(bdlSection(9, "", 0xFFFFFF00), 0xFFFFFFFF));
  EXPECT_BAD_FILE(reader.nextSection(), "read error");
}

TEST_F(PackageReader, RefusedReaderStaysWithinItsBytes) {
  MemoryReader& reader = over(bdlFile(bdlSection(9, "", 0xFFFFFFFF)));
  EXPECT_BAD_FILE(reader.nextSection(), "invalid length of section");
  EXPECT_BAD_FILE(reader.nextSection(), "invalid length of file");
}

TEST_F(PackageReader, ReadingMoreThanTheSectionHoldsIsABadSectionSize) {
  MemoryReader& reader = over(bdlFile(bdlSection(1, "abc") + bdlSection(2, "text")));
  ASSERT_TRUE(reader.nextSection());
  EXPECT_BAD_FILE(readText(reader, 4), "bad section size");
  EXPECT_EQ(readText(reader, 3), "abc");
  EXPECT_BAD_FILE(readText(reader, 1), "bad section size");
}

TEST_F(PackageReader, SkippingMoreThanTheSectionHoldsIsABadSkip) {
  MemoryReader& reader = over(bdlFile(bdlSection(1, "abc") + bdlSection(2, "text")));
  ASSERT_TRUE(reader.nextSection());
  EXPECT_BAD_FILE(reader.skip(4), "bad skip");
  reader.skip(3);
  EXPECT_EQ(reader.unread(), 0u);
  EXPECT_BAD_FILE(reader.skip(1), "bad skip");
}

TEST_F(PackageReader, ReadingAndSkippingNothingIsAlwaysAllowed) {
  MemoryReader& reader = over(bdlFile(bdlSection(1, "")));
  ASSERT_TRUE(reader.nextSection());
  const auto before = reader.position();
  EXPECT_EQ(readText(reader, 0), "");
  reader.skip(0);
  EXPECT_EQ(reader.position(), before);
}

TEST_F(PackageReader, WithoutACurrentSectionReadAndSkipDoNothing) {
  MemoryReader& reader = over(bdlFile(bdlSection(1, "abc")));
  EXPECT_EQ(readText(reader, 4), "????");
  reader.skip(100);
  EXPECT_EQ(reader.position(), 0u);
  ASSERT_TRUE(reader.nextSection());
  ASSERT_FALSE(reader.nextSection());
  EXPECT_EQ(readText(reader, 4), "????");
  EXPECT_NO_THROW(reader.skip(100));
}

TEST_F(PackageReader, TruncatedPayloadIsAReadError) {
  MemoryReader& reader = over(bdlFile(bdlSection(1, "abc", 10), 16));
  ASSERT_TRUE(reader.nextSection());
  EXPECT_BAD_FILE(readText(reader, 10), "read error");
}

TEST_F(PackageReader, TwentyTypesCanBeWanted) {
  const std::string bytes = bdlFile(bdlSection(20, "") + bdlSection(21, ""));
  MemoryReader reader(kPackageMagic, bytes);
  for (std::uint16_t type = 1; type <= 20; ++type) reader.want(type);
  EXPECT_THROW(reader.want(21), std::runtime_error);
  ASSERT_TRUE(reader.nextSection());
  EXPECT_EQ(reader.sectionType(), 20);
  EXPECT_FALSE(reader.nextSection());
}

TEST_F(PackageReader, NextImageReadsThePackageBehindThisOne) {
  MemoryReader& reader =
      over(bdlFile(bdlSection(1, "abc") + bdlSection(2, "text")) + bdlFile(bdlSection(3, "xyz")));
  ASSERT_TRUE(reader.nextSection());
  EXPECT_EQ(readText(reader, 1), "a");
  ASSERT_TRUE(reader.nextImage());
  EXPECT_EQ(reader.sectionType(), 0);
  ASSERT_TRUE(reader.nextSection());
  EXPECT_EQ(reader.sectionType(), 3);
  EXPECT_EQ(readText(reader, 3), "xyz");
  EXPECT_FALSE(reader.nextSection());
  EXPECT_FALSE(reader.nextImage());
}

TEST_F(PackageReader, NextImageAfterTheLastSectionPassesOverItsUnreadRest) {
  MemoryReader& reader =
      over(bdlFile(bdlSection(1, "abc")) + bdlFile("") + bdlFile(bdlSection(2, "text")));
  while (reader.nextSection()) {
  }
  ASSERT_TRUE(reader.nextImage());
  EXPECT_FALSE(reader.nextSection());
  ASSERT_TRUE(reader.nextImage());
  ASSERT_TRUE(reader.nextSection());
  EXPECT_EQ(readText(reader, 4), "text");
}

TEST_F(PackageReader, NextImageBeforeTheFirstSectionLeavesThatPackageOut) {
  MemoryReader& reader = over(bdlFile(bdlSection(1, "abc")) + bdlFile(bdlSection(2, "text")));
  ASSERT_TRUE(reader.nextImage());
  ASSERT_TRUE(reader.nextSection());
  EXPECT_EQ(readText(reader, 4), "text");
}

TEST_F(PackageReader, SectionsOfALaterImageEndWithThatImage) {
  MemoryReader& reader = over(bdlFile(bdlSection(1, "abc")) + bdlFile(bdlSection(2, "text") + "!"));
  ASSERT_TRUE(reader.nextImage());
  ASSERT_TRUE(reader.nextSection());
  EXPECT_BAD_FILE(reader.nextSection(), "invalid length of file");
}

TEST_F(PackageReader, NextImageIsFalseWhenNoValidHeaderFollows) {
  for (const char* behind : {"", "short", "not a package at all"}) {
    MemoryReader& reader = over(bdlFile(bdlSection(1, "abc")) + behind);
    ASSERT_TRUE(reader.nextSection());
    EXPECT_FALSE(reader.nextImage());
  }
  EXPECT_FALSE(over("not a package at all").nextImage());
  EXPECT_FALSE(over(bdlFile("", 0xFFFFFFFF)).nextImage());
}

}  // namespace
}  // namespace omniset::test
