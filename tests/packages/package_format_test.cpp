#include "packages/package_format.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "tests/tools/bdl_builder.h"

namespace omniset::test {
namespace {

std::span<const std::uint8_t> bytesOf(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

PackageHeader parsedHeader(const std::string& fields) {
  const std::string field = padded(fields, kPackageHeaderWidth);
  ByteReader bytes(bytesOf(field));
  const PackageHeader header = parsePackageHeader(bytes);
  EXPECT_TRUE(bytes.ok());
  EXPECT_EQ(bytes.left(), 0u);
  return header;
}

TEST(PackageFormat, HeaderHoldsNameAndVersion) {
  const PackageHeader header = parsedHeader(padded("system", 16) + "\x07\x66\x09\x02");
  EXPECT_EQ(header.name, "system");
  EXPECT_EQ(header.version, 0x02096607u);
}

TEST(PackageFormat, NameOfSixteenCharactersNeedsNoTerminator) {
  const PackageHeader header = parsedHeader("sixteen-letters!\x07\x66\x09\x02");
  EXPECT_EQ(header.name, "sixteen-letters!");
  EXPECT_EQ(header.version, 0x02096607u);
}

TEST(PackageFormat, NameEndsAtItsFirstNul) {
  EXPECT_EQ(parsedHeader(std::string("ppp\0leftover", 12)).name, "ppp");
  EXPECT_EQ(parsedHeader("").name, "");
}

TEST(PackageFormat, ShortHeaderIsReportedByTheCursor) {
  const std::string field(kPackageHeaderWidth - 1, 'x');
  ByteReader bytes(bytesOf(field));
  parsePackageHeader(bytes);
  EXPECT_FALSE(bytes.ok());
}

TEST(PackageFormat, DependencyHoldsNameAndBothBounds) {
  const std::string field =
      padded("system", 16) + "\x01\x02\x03\x04" + "????" + "\x05\x06\x07\x08" + "????";
  ByteReader bytes(bytesOf(field));
  const PackageDependency dependency = parseDependency(bytes);
  EXPECT_TRUE(bytes.ok());
  EXPECT_EQ(bytes.left(), 0u);
  EXPECT_EQ(dependency.name, "system");
  EXPECT_EQ(dependency.minVersion, 0x04030201u);
  EXPECT_EQ(dependency.maxVersion, 0x08070605u);
}

TEST(PackageFormat, DependencyNameOfSixteenCharactersNeedsNoTerminator) {
  const std::string field = bdlDependencyEntry({"sixteen-letters!", 1, 2});
  ByteReader bytes(bytesOf(field));
  EXPECT_EQ(parseDependency(bytes).name, "sixteen-letters!");
}

TEST(PackageFormat, DependencyAcceptsVersionsFromItsLowestToItsHighest) {
  const PackageDependency dependency{"system", 0x02086600, 0x82096607};
  EXPECT_FALSE(dependency.accepts(0x020865FF));
  EXPECT_TRUE(dependency.accepts(0x02086600));
  EXPECT_TRUE(dependency.accepts(0x7FFFFFFF));
  EXPECT_TRUE(dependency.accepts(0x82096607));
  EXPECT_FALSE(dependency.accepts(0x82096608));
}

TEST(PackageFormat, DescriptionLosesItsFirstAndItsLastThreeCharacters) {
  EXPECT_EQ(descriptionText("\"Base system\"\n\n"), "Base system");
}

TEST(PackageFormat, DescriptionEndsAtItsFirstNul) {
  EXPECT_EQ(descriptionText(std::string("\"Base\"\n\n\0more text", 18)), "Base");
}

TEST(PackageFormat, LineFeedsOfADescriptionBecomeSpaces) {
  EXPECT_EQ(descriptionText("\nfirst\nsecond\r\n\nthird!!!"), "first second\r  third");
}

TEST(PackageFormat, DescriptionOfFourCharactersShowsNothing) {
  EXPECT_EQ(descriptionText("abcd"), "");
  EXPECT_EQ(descriptionText("abcde"), "b");
}

TEST(PackageFormat, DescriptionShorterThanFourLosesOnlyItsFirstCharacter) {
  EXPECT_EQ(descriptionText("a"), "");
  EXPECT_EQ(descriptionText("ab"), "b");
  EXPECT_EQ(descriptionText("abc"), "bc");
}

TEST(PackageFormat, EmptyDescriptionIsOutOfRange) {
  EXPECT_THROW(descriptionText(""), std::out_of_range);
  EXPECT_THROW(descriptionText(std::string_view("\0text", 5)), std::out_of_range);
}

}  // namespace
}  // namespace omniset::test
