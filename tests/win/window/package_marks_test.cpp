// Choosing packages for a router.
#include <gmock/gmock.h>

#include "tests/win/window/window_test.h"

namespace omniset::test {
namespace {

using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class PackageMarks : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    startWithRouter();
  }

  void focusPackages() { window().focus(IDC_PACKAGES); }

  void awaitMarked(const std::string& package, bool marked = true) {
    const int row = packages().find(package);
    waitUntil("\"" + package + (marked ? "\" is marked" : "\" is not marked"),
              [&] { return packages().isMarked(row) == marked; });
    window().settle();
    EXPECT_EQ(packages().isMarked(row), marked);
  }
};

TEST_F(PackageMarks, NoneIsSetForANewRouterOnAFirstRun) {
  EXPECT_THAT(packages().marked(), IsEmpty());
  EXPECT_EQ(window().text(IDC_PACKAGES_GROUP), "Selected 0 package(s)");
}

TEST_F(PackageMarks, AMarkedPackageBringsThoseThatItDependsOn) {
  window().toggle("wireless");
  EXPECT_THAT(packages().marked(), UnorderedElementsAre("security", "system", "wireless"));
  EXPECT_EQ(window().text(IDC_PACKAGES_GROUP), "Selected 3 package(s)");
}

TEST_F(PackageMarks, APackageThatAnotherNeedsStaysMarked) {
  window().toggle("routing");
  packages().clickRow(packages().find("system"));
  window().settle();
  EXPECT_THAT(packages().marked(), UnorderedElementsAre("routing", "system"));
}

TEST_F(PackageMarks, AnUnmarkedPackageLeavesThoseThatItBrought) {
  window().toggle("routing");
  window().toggle("routing");
  EXPECT_THAT(packages().marked(), UnorderedElementsAre("system"));
  EXPECT_EQ(window().text(IDC_PACKAGES_GROUP), "Selected 1 package(s)");
}

TEST_F(PackageMarks, SelectAllMarksEveryPackageAndSelectNoneUnmarksThem) {
  window().click(IDC_SELECT_ALL);
  window().awaitText(IDC_PACKAGES_GROUP, "Selected 4 package(s)");
  EXPECT_EQ(packages().marked().size(), 4u);
  window().click(IDC_SELECT_NONE);
  window().awaitText(IDC_PACKAGES_GROUP, "Selected 0 package(s)");
  EXPECT_THAT(packages().marked(), IsEmpty());
}

TEST_F(PackageMarks, AClickOnTheCheckBoxTogglesOnce) {
  packages().clickCheckBox(packages().find("system"));
  awaitMarked("system");
  packages().clickCheckBox(packages().find("system"));
  awaitMarked("system", false);
}

TEST_F(PackageMarks, AClickOnTheDescriptionToggles) {
  packages().clickCell(packages().find("system"), kDescriptionColumn);
  awaitMarked("system");
}

TEST_F(PackageMarks, TheSpaceKeyTogglesThePackageAtTheSelectionMark) {
  focusPackages();
  packages().press(VK_HOME);
  packages().press(VK_DOWN);
  window().settle();
  const int row = packages().selectedRow();
  ASSERT_GE(row, 0);
  const std::string package = packages().row(row).texts.at(kNameColumn);
  packages().press(VK_SPACE);
  awaitMarked(package);
  packages().press(VK_SPACE);
  awaitMarked(package, false);
}

TEST_F(PackageMarks, AClickShowsWhatThePackageDependsOn) {
  window().toggle("wireless");
  window().awaitStatusBar("wireless depends on system (2.9.7 - any), security (2.9.7)");
  window().toggle("wireless");
  packages().clickRow(packages().find("system"));
  window().awaitStatusBar("system depends on nothing");
}

TEST_F(PackageMarks, TheStatusBarFollowsTheArrowKeys) {
  focusPackages();
  packages().press(VK_HOME);
  window().settle();
  const std::string first = packages().row(0).texts.at(kNameColumn);
  const std::string second = packages().row(1).texts.at(kNameColumn);
  packages().press(VK_DOWN);
  waitUntil(
      "the status bar describes " + second,
      [&] { return window().statusBar().starts_with(second + " depends on "); },
      [&] { return window().statusBar(); });
  packages().press(VK_UP);
  waitUntil(
      "the status bar describes " + first,
      [&] { return window().statusBar().starts_with(first + " depends on "); },
      [&] { return window().statusBar(); });
}

class NoRouterSelected : public WindowTest {};

TEST_F(NoRouterSelected, PackagesTakeNoMark) {
  startWindow();
  ASSERT_EQ(packages().count(), 4);
  if (IsWindowEnabled(window().control(IDC_PACKAGES))) {
    packages().clickRow(packages().find("system"));
    window().settle();
  }
  EXPECT_THAT(packages().marked(), IsEmpty());
  EXPECT_EQ(window().text(IDC_PACKAGES_GROUP), "Packages");
}

}  // namespace
}  // namespace omniset::test
