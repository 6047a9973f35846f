#include "cli/packages_command.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/bad_input.h"
#include "cli/exit_status.h"
#include "cli/package_folder.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/temp_folder.h"
#include "tests/tools/bdl_builder.h"

namespace omniset::test {

namespace {

class PackagesCommand : public testing::Test {
 protected:
  int run(bool json) { return runPackages({folder.path(), json}, {out, err}); }

  std::string refusal(const std::string& path) {
    try {
      runPackages({path, false}, {out, err});
    } catch (const BadInput& e) {
      return e.what();
    }
    return "listed";
  }

  SilentTrace silent;
  TempFolder folder;
  std::ostringstream out, err;
};

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace

TEST_F(PackagesCommand, ListsEachPackageAsALineOfJson) {
  folder.write("a.bdl", buildBdl({.name = "system", .description = "Base"}));
  folder.write("b.bdl", buildBdl({.name = "ppp",
                                  .version = versionWord(2, 9),
                                  .description = "Dial",
                                  .dependencies = {{"system", versionWord(2, 8), 0}},
                                  .payloadBytes = 100}));
  EXPECT_EQ(run(true), kExitDone);
  std::istringstream lines(out.str());
  std::map<std::string, nlohmann::json> packages;
  for (std::string line; std::getline(lines, line);) {
    const auto object = nlohmann::json::parse(line);
    packages[object["name"]] = object;
  }
  ASSERT_EQ(packages.size(), 2u);
  EXPECT_EQ(packages["ppp"]["version"], "2.9");
  EXPECT_EQ(packages["ppp"]["file"], "b.bdl");
  EXPECT_EQ(packages["ppp"]["size"], readFile(folder.path() + "/b.bdl").size());
  EXPECT_EQ(packages["ppp"]["dependencies"][0]["max"], "any");
  EXPECT_EQ(packages["ppp"]["missing"], nlohmann::json::array({"system"}));
  EXPECT_EQ(packages["system"]["missing"], nlohmann::json::array());
  EXPECT_EQ(err.str(), "");
}

TEST_F(PackagesCommand, ListsATable) {
  folder.write("a.bdl", buildBdl({.name = "system", .description = "Base"}));
  EXPECT_EQ(run(false), kExitDone);
  EXPECT_TRUE(contains(out.str(), "Name"));
  EXPECT_TRUE(contains(out.str(), "system"));
}

TEST_F(PackagesCommand, ListsByNameAndVersion) {
  folder.write("1.bdl", buildBdl({.name = "b", .version = versionWord(2, 10), .description = "B"}));
  folder.write("2.bdl", buildBdl({.name = "b", .version = versionWord(2, 9), .description = "B"}));
  folder.write("3.bdl", buildBdl({.name = "a", .description = "A"}));
  EXPECT_EQ(run(true), kExitDone);
  const std::string text = out.str();
  EXPECT_LT(text.find("3.bdl"), text.find("2.bdl"));
  EXPECT_LT(text.find("2.bdl"), text.find("1.bdl"));
}

TEST_F(PackagesCommand, NamesFilesThatAreNoPackages) {
  folder.write("a.bdl", buildBdl({.name = "system", .description = "Base"}));
  folder.write("broken.bdl", "nothing");
  EXPECT_EQ(run(false), kExitDone);
  EXPECT_TRUE(contains(err.str(), "'broken.bdl' is not a readable package and is left out"));
  EXPECT_FALSE(contains(out.str(), "broken"));
}

TEST_F(PackagesCommand, MissingFolderIsRefused) {
  EXPECT_TRUE(contains(refusal(folder.path() + "/none"), "There is no folder"));
}

TEST_F(PackagesCommand, FileInPlaceOfAFolderIsRefused) {
  EXPECT_TRUE(contains(refusal(folder.write("file", "")), "is not a folder"));
}

TEST_F(PackagesCommand, FolderWithoutPackagesIsRefused) {
  folder.write("readme.txt", "");
  EXPECT_TRUE(contains(refusal(folder.path()), "There are no packages in"));
}

TEST_F(PackagesCommand, FolderWithoutAnyReadablePackageIsRefused) {
  folder.write("broken.bdl", "nothing");
  EXPECT_TRUE(contains(refusal(folder.path()), "None of the .bdl files"));
}

}  // namespace omniset::test
