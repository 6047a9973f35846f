#include <gmock/gmock.h>

#include <utility>

#include "catalogue_fixture.h"
#include "core/path.h"
#include "expect_bad_file.h"
#include "packages/folder_listing.h"

namespace omniset::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

const std::string kHeader = bdlPackageSection("broken", versionWord(1, 0));
const std::string kDescription = bdlDescriptionSection("Text");

class CatalogueScan : public CatalogueTest {
 protected:
  void scan() {
    status.shown.clear();
    catalogue.scan(folder.path());
  }
};

TEST_F(CatalogueScan, FolderWithoutPackagesIsSaidInTheStatus) {
  scan();
  EXPECT_THAT(status.shown, ElementsAre("Looking for packages in " + folder.path(),
                                        "No packages in this directory"));
  EXPECT_EQ(catalogue.count(), 0);
  EXPECT_EQ(catalogue.folder(), folder.path());
}

TEST_F(CatalogueScan, MissingFolderHasNoPackages) {
  catalogue.scan(joinPath(folder.path(), "missing"));
  EXPECT_EQ(status.shown.back(), "No packages in this directory");
  EXPECT_EQ(traced.text(), "");
}

TEST_F(CatalogueScan, StatusTellsEachFileAndTheCount) {
  write("system.bdl", {.name = "system"});
  scan();
  EXPECT_THAT(status.shown, ElementsAre("Looking for packages in " + folder.path(),
                                        "Loading system.bdl", "Loaded 1 package(s)"));
}

TEST_F(CatalogueScan, RecordsRowsAndStatusKeepTheOrderOfTheSystem) {
  for (const char* name : {"delta", "alpha", "echo", "bravo"}) {
    write(std::string(name) + ".bdl", {.name = name});
  }
  scan();
  const auto listed = listPackageFiles(folder.path());
  ASSERT_THAT(listed, SizeIs(4));
  ASSERT_EQ(catalogue.count(), 4);
  for (int i = 0; i < 4; ++i) {
    const std::string& fileName = listed[static_cast<std::size_t>(i)];
    EXPECT_EQ(catalogue.fileNameAt(i), fileName);
    EXPECT_EQ(rows.rows.at(static_cast<std::size_t>(i)).text[0] + ".bdl", fileName);
    EXPECT_EQ(status.shown.at(static_cast<std::size_t>(i) + 1), "Loading " + fileName);
  }
}

TEST_F(CatalogueScan, RowShowsNameVersionAndDescription) {
  write("system-2.9.7.bdl",
        {.name = "system", .version = versionWord(2, 9, 7), .description = "Base\nsystem"});
  scan();
  ASSERT_THAT(rows.rows, SizeIs(1));
  EXPECT_THAT(rows.rows[0].text, ElementsAre("system", "2.9.7", "Base system"));
  EXPECT_EQ(rows.rows[0].image, 0);
}

TEST_F(CatalogueScan, RecordHoldsWhatTheFileSays) {
  const BdlPackage package{.name = "sixteen-letters!",
                           .version = versionWord(2, 9, 3, 'b'),
                           .description = "Text",
                           .dependencies = {{"system", 5, 0}},
                           .payloadBytes = 10'000};
  add(package, "x.bdl");
  const PackageRecord& record = catalogue.record(0);
  EXPECT_EQ(record.name, "sixteen-letters!");
  EXPECT_EQ(record.version, versionWord(2, 9, 3, 'b'));
  EXPECT_EQ(record.fileName, "x.bdl");
  EXPECT_EQ(record.size, static_cast<int>(buildBdl(package).size()));
  EXPECT_EQ(record.description, "Text");
  ASSERT_THAT(record.dependencies, SizeIs(1));
  EXPECT_EQ(record.dependencies[0].name, "system");
  EXPECT_FALSE(record.unresolved);
  EXPECT_THAT(record.providers, IsEmpty());
}

TEST_F(CatalogueScan, SizeIsThatOfTheFileWhateverItsHeaderSays) {
  folder.write("x.bdl", bdlFile(kHeader + kDescription) + "behind the package");
  catalogue.addPack("x.bdl");
  EXPECT_EQ(catalogue.sizeOf("x.bdl"), static_cast<int>(readFile(folder.path() + "/x.bdl").size()));
}

TEST_F(CatalogueScan, NextScanForgetsTheFolderBefore) {
  write("system.bdl", {.name = "system"});
  scan();
  const TempFolder other;
  other.write("routing.bdl", buildBdl({.name = "routing"}));
  catalogue.scan(other.path());
  ASSERT_EQ(catalogue.count(), 1);
  EXPECT_EQ(catalogue.record(0).name, "routing");
  ASSERT_THAT(rows.rows, SizeIs(1));
  EXPECT_EQ(rows.rows[0].text[0], "routing");
  EXPECT_EQ(catalogue.folder(), other.path());
}

TEST_F(CatalogueScan, UnmetDependencyReplacesTheDescriptionAndMarksTheRow) {
  write("routing.bdl",
        {.name = "routing", .description = "Routes", .dependencies = {{"system", 1, 0}}});
  write("dhcp.bdl", {.name = "dhcp", .description = "Addresses"});
  scan();
  EXPECT_EQ(rows.named("routing").text[2], "Missing: system");
  EXPECT_EQ(rows.named("routing").image, 3);
  EXPECT_EQ(rows.named("dhcp").text[2], "Addresses");
  EXPECT_EQ(rows.named("dhcp").image, 0);
  EXPECT_EQ(status.shown.back(), "Loaded 2 package(s)");
  EXPECT_EQ(catalogue.record(catalogue.findByName("routing", true)).description, "Routes");
}

TEST_F(CatalogueScan, MetDependencyLeavesTheRowAlone) {
  write("routing.bdl",
        {.name = "routing", .description = "Routes", .dependencies = {{"system", 1, 0}}});
  write("system.bdl", {.name = "system", .description = "Base"});
  scan();
  EXPECT_EQ(rows.named("routing").text[2], "Routes");
  EXPECT_EQ(rows.named("routing").image, 0);
}

TEST_F(CatalogueScan, FileThatCannotBeOpenedIsTracedWithItsPath) {
  catalogue.addPack("gone.bdl");
  EXPECT_EQ(traced.text(), "addPack: fopen() fail (" + joinPath(folder.path(), "gone.bdl") + ")\n");
  EXPECT_EQ(catalogue.count(), 0);
  EXPECT_THAT(rows.rows, IsEmpty());
}

TEST_F(CatalogueScan, FileWhoseFirstWantedSectionIsNoHeaderIsIgnoredWithoutATrace) {
  folder.write("a.bdl", bdlFile(kDescription + kHeader));
  folder.write("b.bdl", bdlFile(bdlSection(9, "other")));
  folder.write("c.bdl", bdlFile(""));
  scan();
  EXPECT_EQ(catalogue.count(), 0);
  EXPECT_THAT(rows.rows, IsEmpty());
  EXPECT_EQ(traced.text(), "");
  EXPECT_EQ(status.shown.back(), "Loaded 0 package(s)");
}

TEST_F(CatalogueScan, FileWithoutADescriptionLeavesARowWithoutARecord) {
  folder.write("broken.bdl", bdlFile(kHeader + bdlDependencySection({})));
  scan();
  EXPECT_EQ(catalogue.count(), 0);
  ASSERT_THAT(rows.rows, SizeIs(1));
  EXPECT_THAT(rows.rows[0].text, ElementsAre("broken", "1.0", ""));
  EXPECT_EQ(traced.text(), "");
}

TEST_F(CatalogueScan, RowsOfRecordsComeBeforeTheRowsWithoutARecord) {
  folder.write("broken.bdl", bdlFile(kHeader));
  catalogue.addPack("broken.bdl");
  add({.name = "system", .description = "Base"});
  add({.name = "routing", .description = "Routes"});
  ASSERT_THAT(rows.rows, SizeIs(3));
  EXPECT_THAT(rows.rows[0].text, ElementsAre("system", "1.0", "Base"));
  EXPECT_THAT(rows.rows[1].text, ElementsAre("routing", "1.0", "Routes"));
  EXPECT_THAT(rows.rows[2].text, ElementsAre("broken", "1.0", ""));
  EXPECT_EQ(catalogue.record(1).name, "routing");
}

TEST_F(CatalogueScan, MalformedFileIsTracedAndTheOthersAreLoaded) {
  folder.write("broken.bdl", "not a package");
  write("system.bdl", {.name = "system"});
  scan();
  EXPECT_EQ(traced.text(), "EXC loading packages: wrong magic\n");
  EXPECT_EQ(catalogue.count(), 1);
  EXPECT_EQ(status.shown.back(), "Loaded 1 package(s)");
}

TEST_F(CatalogueScan, EachFaultIsTracedWithItsText) {
  const std::pair<std::string, const char*> faults[] = {
      {"", "read error"},
      {bdlFile(kHeader + kDescription + "tail"), "invalid length of file"},
      {bdlFile(kHeader + bdlSection(2, "short", 99)), "invalid length of section"},
      {bdlFile(bdlSection(1, "short")), "bad section size"},
      {bdlFile(kHeader + kDescription + bdlSection(3, "x")), "bad section size"},
      {bdlFile(kHeader + bdlSection(2, "cut", 50), 38 + 56), "read error"},
  };
  for (const auto& [content, text] : faults) {
    traced.clear();
    folder.write("broken.bdl", content);
    scan();
    EXPECT_EQ(traced.text(), std::string("EXC loading packages: ") + text + "\n");
    EXPECT_EQ(catalogue.count(), 0);
  }
}

TEST_F(CatalogueScan, EmptyDescriptionIsTracedAndLeavesARow) {
  folder.write("broken.bdl", bdlFile(kHeader + bdlSection(2, "")));
  scan();
  EXPECT_THAT(traced.text(), StartsWith("EXC loading packages: "));
  EXPECT_THAT(traced.text(), HasSubstr("substr"));
  EXPECT_THAT(traced.text(), EndsWith("\n"));
  ASSERT_THAT(rows.rows, SizeIs(1));
  EXPECT_EQ(rows.rows[0].text[0], "broken");
}

TEST_F(CatalogueScan, FaultInTheDependenciesLeavesAWholeRowWithoutARecord) {
  folder.write("broken.bdl", bdlFile(kHeader + kDescription + bdlSection(3, "x")));
  EXPECT_BAD_FILE(catalogue.addPack("broken.bdl"), "bad section size");
  EXPECT_EQ(catalogue.count(), 0);
  ASSERT_THAT(rows.rows, SizeIs(1));
  EXPECT_THAT(rows.rows[0].text, ElementsAre("broken", "1.0", "Text"));
}

TEST_F(CatalogueScan, DependenciesStayWithTheirPackageBehindAMalformedFile) {
  const std::string dependencies = bdlDependencySection({{"phantom", 1, 0}});
  folder.write("broken.bdl", bdlFile(kHeader + kDescription + dependencies.substr(0, 9)));
  EXPECT_THROW(catalogue.addPack("broken.bdl"), BadFile);
  add({.name = "system"});
  add({.name = "routing", .dependencies = {{"system", 0, 0}}});
  EXPECT_EQ(catalogue.dependencyText(0), "system depends on nothing");
  EXPECT_EQ(catalogue.dependencyText(1), "routing depends on system (any)");
}

TEST_F(CatalogueScan, PackagedFilesBetweenTheSectionsArePassedOver) {
  folder.write("x.bdl",
               bdlFile(bdlSection(4, std::string(9000, 'f')) + bdlPackageSection("x", 0) +
                       bdlSection(5, "") + kDescription + bdlSection(4, std::string(70'000, 'f')) +
                       bdlDependencySection({{"system", 0, 0}}) + bdlSection(4, "end")));
  catalogue.addPack("x.bdl");
  EXPECT_EQ(catalogue.dependencyText(0), "x depends on system (any)");
  EXPECT_THAT(rows.rows[0].text, ElementsAre("x", "any", "Text"));
}

TEST_F(CatalogueScan, AnotherHeaderInPlaceOfTheDependenciesMeansNone) {
  folder.write("x.bdl",
               bdlFile(kHeader + kDescription + kHeader + bdlDependencySection({{"a", 0, 0}})));
  catalogue.addPack("x.bdl");
  ASSERT_EQ(catalogue.count(), 1);
  EXPECT_THAT(catalogue.record(0).dependencies, IsEmpty());
}

TEST_F(CatalogueScan, FilesAreClosedWhateverTheyHold) {
  write("whole.bdl", {.name = "whole"});
  folder.write("ignored.bdl", bdlFile(kDescription));
  folder.write("halfway.bdl", bdlFile(kHeader));
  folder.write("broken.bdl", bdlFile(kHeader + bdlSection(2, "")));
  // More scans than a process may have files open.
  for (int i = 0; i < 600; ++i) scan();
  EXPECT_EQ(catalogue.count(), 1);
  EXPECT_FALSE(traced.contains("fopen"));
}

}  // namespace
}  // namespace omniset::test
