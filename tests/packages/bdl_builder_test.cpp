// The builder of package files, against the catalogue that reads them.
#include "tests/tools/bdl_builder.h"

#include <gmock/gmock.h>

#include "catalogue_fixture.h"
#include "packages/version_text.h"
#include "tests/tools/bdl_sets.h"

namespace omniset::test {
namespace {

using testing::IsEmpty;

TEST(BdlBuilder, WritesTheBytesOfTheFormat) {
  const std::string file = buildBdl({.name = "ab", .version = 0x02096607, .description = "Text"});
  const std::string expected = std::string("\x1E\xF1\xD0\xBA\x34\0\0\0", 8) +  // 38 + 14 follow
                               std::string("\x01\0\x20\0\0\0", 6) +
                               padded(padded("ab", 16) + "\x07\x66\x09\x02", 32) +
                               std::string("\x02\0\x08\0\0\0", 6) + "\"Text\"\n\n";
  EXPECT_EQ(file, expected);
}

TEST(BdlBuilder, PayloadDependsOnItsSeedAlone) {
  const auto file = [](std::uint64_t seed) {
    return buildBdl({.name = "x", .payloadBytes = 1000, .seed = seed});
  };
  EXPECT_EQ(file(1), file(1));
  EXPECT_NE(file(1), file(2));
  EXPECT_EQ(file(1).size(), file(2).size());
}

TEST(BdlBuilder, ParsesWhatVersionTextWrites) {
  for (const char* text : {"2.9", "2.9.7", "2.9alpha", "2.9beta3", "2.9rc1", "255.0.255", "any"}) {
    const auto version = parseVersion(text);
    ASSERT_TRUE(version) << text;
    EXPECT_STREQ(versionText(*version), text);
  }
  EXPECT_EQ(parseVersion("2.9.3", 'b'), versionWord(2, 9, 3, 'b'));
}

TEST(BdlBuilder, RefusesWhatIsNoVersion) {
  for (const char* text :
       {"", "2", "2.", "x.1", "2.9.", "2.9.x", "2.9gamma1", "256.0", "2.9.7.1"}) {
    EXPECT_EQ(parseVersion(text), std::nullopt) << text;
  }
}

using BdlSets = CatalogueTest;

TEST_F(BdlSets, DemoPackagesAreWholeAndHaveAllTheyDependOn) {
  for (const BdlPackage& package : demoPackages()) write(bdlFileName(package), package);
  catalogue.scan(folder.path());
  EXPECT_EQ(catalogue.count(), 6);
  EXPECT_EQ(traced.text(), "");
  for (const PackageRecord& record : catalogue.records()) {
    EXPECT_THAT(record.missing, IsEmpty()) << record.name;
    EXPECT_GE(record.size, 200 * 1024);
    EXPECT_LE(record.size, 2 * 1024 * 1024);
  }
}

TEST_F(BdlSets, ManyPackagesAllDependOnTheFirst) {
  for (int i = 0; i < 5; ++i) write(bdlFileName(manyPackage(i)), manyPackage(i));
  catalogue.scan(folder.path());
  EXPECT_EQ(catalogue.count(), 5);
  const auto order = catalogue.installOrder({bdlFileName(manyPackage(4))});
  EXPECT_THAT(order,
              testing::ElementsAre(bdlFileName(manyPackage(0)), bdlFileName(manyPackage(4))));
}

}  // namespace
}  // namespace omniset::test
