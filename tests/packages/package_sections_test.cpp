#include "packages/package_sections.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "expect_bad_file.h"
#include "largest_allocation.h"
#include "tests/tools/bdl_builder.h"
#include "tests/tools/memory_reader.h"

namespace omniset::test {
namespace {

struct Metadata {
  explicit Metadata(std::string content) : bytes(std::move(content)) { wantMetadata(reader); }
  std::string bytes;
  MemoryReader reader{kPackageMagic, bytes};
};

const std::string kHeader = bdlPackageSection("system", versionWord(2, 9, 7));

TEST(PackageSections, HeaderIsReadFromThePackageSection) {
  Metadata file(bdlFile(bdlSection(4, "files first") + kHeader));
  const auto header = readPackageHeader(file.reader);
  ASSERT_TRUE(header);
  EXPECT_EQ(header->name, "system");
  EXPECT_EQ(header->version, 0x02096607u);
}

TEST(PackageSections, WhatFollowsTheFirst32BytesOfTheHeaderIsPassedOver) {
  const std::string longHeader = padded("system", 32) + "and some more";
  Metadata file(bdlFile(bdlSection(1, longHeader) + bdlDescriptionSection("Base")));
  EXPECT_TRUE(readPackageHeader(file.reader));
  EXPECT_EQ(readDescription(file.reader), "Base");
}

TEST(PackageSections, HeaderShorterThan32BytesIsABadSectionSize) {
  Metadata file(bdlFile(bdlSection(1, std::string(31, 'x')) + bdlDescriptionSection("Base")));
  EXPECT_BAD_FILE(readPackageHeader(file.reader), "bad section size");
}

TEST(PackageSections, OtherSectionInPlaceOfTheExpectedOneIsNotRead) {
  Metadata description(bdlFile(bdlDescriptionSection("Base") + kHeader));
  EXPECT_EQ(readPackageHeader(description.reader), std::nullopt);
  Metadata dependencies(bdlFile(bdlDependencySection({})));
  EXPECT_EQ(readDescription(dependencies.reader), std::nullopt);
  Metadata header(bdlFile(kHeader));
  EXPECT_TRUE(readDependencies(header.reader).empty());
  Metadata nothing(bdlFile(""));
  EXPECT_EQ(readPackageHeader(nothing.reader), std::nullopt);
}

TEST(PackageSections, LongDescriptionIsReadWhole) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "word" + std::to_string(i) + " ";
  Metadata file(bdlFile(bdlDescriptionSection(text)));
  EXPECT_EQ(readDescription(file.reader), text);
}

TEST(PackageSections, DescriptionEndsAtANulInALaterPiece) {
  const std::string text(10'000, 'x');
  Metadata file(bdlFile(bdlSection(2, "!" + text + "???" + '\0' + std::string(1'000'000, 'y'))));
  const LargestAllocation allocation;
  EXPECT_EQ(readDescription(file.reader), text);
  EXPECT_EQ(file.reader.unread(), 0u);
  EXPECT_LT(allocation.bytes(), 100'000u);
}

TEST(PackageSections, EmptyDescriptionIsOutOfRange) {
  Metadata file(bdlFile(bdlSection(2, "")));
  EXPECT_THROW(readDescription(file.reader), std::out_of_range);
}

TEST(PackageSections, DescriptionThatClaimsGigabytesEndsWithTheBytes) {
  Metadata file(bdlFile(bdlSection(2, std::string(10'000, 'x'), 0xFFFFFF00), 0xFFFFFFFF));
  const LargestAllocation allocation;
  EXPECT_BAD_FILE(readDescription(file.reader), "read error");
  EXPECT_GT(allocation.bytes(), 0u);
  EXPECT_LT(allocation.bytes(), 100'000u);
}

TEST(PackageSections, DependenciesComeInFileOrder) {
  Metadata file(bdlFile(bdlDependencySection({{"system", 1, 2}, {"ppp", 3, 0}, {"system", 5, 6}})));
  const auto dependencies = readDependencies(file.reader);
  ASSERT_EQ(dependencies.size(), 3u);
  EXPECT_EQ(dependencies[0].name, "system");
  EXPECT_EQ(dependencies[1].name, "ppp");
  EXPECT_EQ(dependencies[1].minVersion, 3u);
  EXPECT_EQ(dependencies[1].maxVersion, 0u);
  EXPECT_EQ(dependencies[2].maxVersion, 6u);
}

TEST(PackageSections, BytesBehindTheCountedDependenciesArePassedOver) {
  const std::string payload = littleEndian16(1) + bdlDependencyEntry({"system", 1, 2}) + "rest";
  Metadata file(bdlFile(bdlSection(3, payload)));
  EXPECT_EQ(readDependencies(file.reader).size(), 1u);
  EXPECT_FALSE(file.reader.nextSection());
}

TEST(PackageSections, MoreDependenciesThanTheSectionHoldsAreABadSectionSize) {
  const std::string payload = littleEndian16(2) + bdlDependencyEntry({"system", 1, 2});
  Metadata file(bdlFile(bdlSection(3, payload)));
  EXPECT_BAD_FILE(readDependencies(file.reader), "bad section size");
}

TEST(PackageSections, DependenciesThatAreNotThereTakeNoMemory) {
  const std::string payload = littleEndian16(0xFFFF) + bdlDependencyEntry({"system", 1, 2});
  Metadata file(bdlFile(bdlSection(3, payload)));
  const LargestAllocation allocation;
  EXPECT_BAD_FILE(readDependencies(file.reader), "bad section size");
  EXPECT_LT(allocation.bytes(), 10'000u);
}

TEST(PackageSections, DependencySectionWithoutACountIsABadSectionSize) {
  Metadata file(bdlFile(bdlSection(3, "x")));
  EXPECT_BAD_FILE(readDependencies(file.reader), "bad section size");
}

}  // namespace
}  // namespace omniset::test
