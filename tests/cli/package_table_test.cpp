#include "cli/package_table.h"

#include <gtest/gtest.h>

#include "tests/tools/bdl_builder.h"

namespace omniset::test {

namespace {

PackageRecord package(const std::string& name, int size) {
  PackageRecord record;
  record.name = name;
  record.version = versionWord(2, 9, 7);
  record.size = size;
  record.description = "About " + name;
  return record;
}

}  // namespace

TEST(DependencyShown, SaysTheBoundsInWords) {
  EXPECT_EQ(dependencyShown({"a", 0, kAnyVersion}), "a");
  EXPECT_EQ(dependencyShown({"a", versionWord(2, 9), kAnyVersion}), "a 2.9 or later");
  EXPECT_EQ(dependencyShown({"a", 0, versionWord(2, 9)}), "a up to 2.9");
  EXPECT_EQ(dependencyShown({"a", versionWord(2, 8), versionWord(2, 9)}), "a 2.8 to 2.9");
  EXPECT_EQ(dependencyShown({"a", versionWord(2, 9), versionWord(2, 9)}), "a 2.9");
}

TEST(PackageTable, AlignsItsColumns) {
  std::vector<PackageRecord> packages{package("system", 1'234'567), package("ppp", 99)};
  packages[1].dependencies = {{"system", versionWord(2, 9), kAnyVersion},
                              {"other", 0, kAnyVersion}};
  packages[1].missing = {"other"};
  EXPECT_EQ(packageTable(packages),
            "Name    Version     Size  Depends on                  Missing  Description\n"
            "system  2.9.7    1234567  -                           -        About system\n"
            "ppp     2.9.7         99  system 2.9 or later, other  other    About ppp\n");
}

TEST(PackageTable, LinesEndWithTheirText) {
  std::vector<PackageRecord> packages{package("system", 1)};
  packages[0].description.clear();
  EXPECT_EQ(packageTable(packages).find(" \n"), std::string::npos);
}

TEST(PackageTable, ShowsNoControlCharacters) {
  std::vector<PackageRecord> packages{package("a\x1b[2J", 1)};
  packages[0].description = "x\ty";
  const std::string table = packageTable(packages);
  EXPECT_EQ(table.find('\x1b'), std::string::npos);
  EXPECT_EQ(table.find('\t'), std::string::npos);
}

}  // namespace omniset::test
