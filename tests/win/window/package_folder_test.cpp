// The folder that packages are taken from, and what is found in it.
#include <gmock/gmock.h>

#include "tests/win/window/window_test.h"

namespace omniset::test {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

constexpr int kUnmetDependencyImage = 3;

class PackageFolder : public WindowTest {
 protected:
  // A second folder, of one package.
  std::string otherFolder() {
    writePackages(path("other"), {{"other", kSampleVersion, "Something else", {}, 1000, 5}});
    return path("other");
  }
};

TEST_F(PackageFolder, ListsNamesVersionsAndDescriptions) {
  startWindow();
  EXPECT_EQ(window().text(IDC_FOLDER), packageFolder());
  EXPECT_THAT(packages().column(kNameColumn),
              UnorderedElementsAre("routing", "security", "system", "wireless"));
  EXPECT_THAT(packages().column(kVersionColumn), ::testing::Each("2.9.7"));
  EXPECT_EQ(packages().row(packages().find("system")).texts.at(kDescriptionColumn),
            "Base system: kernel, console and tools");
  window().awaitStatusBar("Loaded 4 package(s)");
}

TEST_F(PackageFolder, EnterInTheFieldScansTheTypedFolder) {
  startWindow();
  window().type(IDC_FOLDER, otherFolder());
  EXPECT_EQ(packages().count(), 4);
  window().press(IDC_FOLDER, VK_RETURN);
  packages().awaitCount(1);
  EXPECT_THAT(packages().column(kNameColumn), UnorderedElementsAre("other"));
  window().awaitStatusBar("Loaded 1 package(s)");
}

TEST_F(PackageFolder, EnterInAnyControlScansTheTypedFolderToo) {
  startWindow();
  for (const int id : {IDC_ROUTERS, IDC_SETS, IDC_PACKAGES}) {
    const int before = packages().count();
    const std::string name = "added-" + std::to_string(id);
    writePackages(packageFolder(), {{name, kSampleVersion, "New", {}, 10, 1}});
    window().press(id, VK_RETURN);
    packages().awaitCount(before + 1);
  }
}

TEST_F(PackageFolder, LeavingTheFieldScansTheTypedFolder) {
  startWindow();
  window().type(IDC_FOLDER, otherFolder());
  window().focus(IDC_SHOW_HELP);
  packages().awaitCount(1);
  EXPECT_EQ(window().text(IDC_FOLDER), path("other"));
}

TEST_F(PackageFolder, IsRememberedAtTheEnd) {
  startWindow();
  window().type(IDC_FOLDER, otherFolder());
  window().press(IDC_FOLDER, VK_RETURN);
  packages().awaitCount(1);
  restartWindow();
  EXPECT_EQ(window().text(IDC_FOLDER), path("other"));
  EXPECT_EQ(packages().count(), 1);
}

TEST_F(PackageFolder, WithoutPackagesSaysSo) {
  startWindow();
  window().type(IDC_FOLDER, "C:\\windows");
  window().press(IDC_FOLDER, VK_RETURN);
  window().awaitStatusBar("No packages in this directory");
  EXPECT_EQ(packages().count(), 0);
}

TEST_F(PackageFolder, ThatDoesNotExistHasNoPackages) {
  storeText("Package Path", "Q:\\no such folder");
  startWindow();
  window().awaitStatusBar("No packages in this directory");
  EXPECT_EQ(packages().count(), 0);
}

TEST_F(PackageFolder, ThatIsAFileHasNoPackages) {
  storeText("Package Path", packageFolder() + "\\system-2.9.7.bdl");
  startWindow();
  window().awaitStatusBar("No packages in this directory");
}

TEST_F(PackageFolder, BrokenPackagesAreLeftOut) {
  const std::string sound = buildBdl({"system", kSampleVersion, "Base system", {}, 1000, 1});
  writeBytes(packageFolder() + "\\noise.bdl", std::string(500, '\xA5'));
  writeBytes(packageFolder() + "\\empty.bdl", "");
  writeBytes(packageFolder() + "\\cut.bdl", sound.substr(0, 20));
  startWindow();
  EXPECT_THAT(packages().column(kNameColumn),
              UnorderedElementsAre("routing", "security", "system", "wireless"));
  window().awaitStatusBar("Loaded 4 package(s)");
  EXPECT_THAT(window().process().outputLines(), Contains(StartsWith("EXC loading packages: ")));
}

TEST_F(PackageFolder, ARowWithoutPackageTakesNoMark) {
  writeBytes(packageFolder() + "\\zz-half.bdl", bdlFile(bdlPackageSection("half", kSampleVersion)));
  startWithRouter();
  ASSERT_EQ(packages().count(), 5);
  window().awaitStatusBar("Loaded 4 package(s)");
  packages().clickRow(packages().find("half"));
  window().settle();
  EXPECT_THAT(packages().marked(), IsEmpty());
  EXPECT_EQ(window().text(IDC_PACKAGES_GROUP), "Selected 0 package(s)");
}

TEST_F(PackageFolder, AMissingDependencyIsNamedAndMarked) {
  const PackageDependency kernel{"kernel", kSampleVersion, 0};
  const PackageDependency shell{"shell", kSampleVersion, 0};
  writePackages(packageFolder(),
                {{"console", kSampleVersion, "Terminals", {kernel, shell}, 1000, 6}});
  startWindow();
  const ListRow row = packages().row(packages().find("console"));
  EXPECT_EQ(row.texts.at(kDescriptionColumn), "Missing: kernel, shell");
  EXPECT_EQ(row.image, kUnmetDependencyImage);
  EXPECT_NE(packages().row(packages().find("wireless")).image, kUnmetDependencyImage);
}

TEST_F(PackageFolder, CanHaveALongPath) {
  std::string folder = path("deep");
  while (folder.size() < 200) folder += "\\a folder with a rather long name";
  writePackages(folder, samplePackages());
  startWindow();
  window().type(IDC_FOLDER, folder);
  window().press(IDC_FOLDER, VK_RETURN);
  window().awaitStatusBar("Loaded 4 package(s)");
  restartWindow();
  EXPECT_EQ(window().text(IDC_FOLDER), folder);
  EXPECT_EQ(packages().count(), 4);
}

TEST_F(PackageFolder, ChosenAnewShowsTheMarksThatStillApply) {
  startWithRouter();
  window().toggle("routing");
  writePackages(path("few"), {samplePackages().at(2)});
  window().type(IDC_FOLDER, path("few"));
  window().press(IDC_FOLDER, VK_RETURN);
  packages().awaitCount(1);
  window().settle();
  EXPECT_EQ(packages().marked(), Texts{"system"});
}

}  // namespace
}  // namespace omniset::test
