#include "workflow_fixture.h"

namespace omniset::test {

namespace {
using Names = std::vector<std::string>;
using WorkflowSelection = WorkflowTest;
}  // namespace

TEST_F(WorkflowSelection, AnnouncedRouterBecomesAReadyRow) {
  announcedTarget();
  EXPECT_EQ("rack 1", rows.at(0).texts[kLabelColumn]);
  EXPECT_EQ("02:00:00:00:01:01", rows.at(0).texts[kMediaColumn]);
  EXPECT_EQ("Ready", statusOf(0));
}

TEST_F(WorkflowSelection, WithoutAnEntryControlsAreDisabledAndDefaultsShown) {
  EXPECT_EQ(ControlStates{}, view.controls);
  EXPECT_EQ("Packages", view.title);
  EXPECT_EQ("", view.statusLine);
  EXPECT_EQ(9600, view.typed.baudRate);
  EXPECT_EQ("", view.typed.address);
}

TEST_F(WorkflowSelection, PreviousInstallIsAppliedToThePackageListAndToNewRouters) {
  sets.add(kPreviousInstall, {"system"});
  workflow.openFolder(folder.path());
  EXPECT_TRUE(isMarked("system"));
  announcedTarget();
  EXPECT_EQ(Names{"system"}, routers.find(routerMac(1))->packages);
}

TEST_F(WorkflowSelection, SelectingAnEntryLoadsItsRequest) {
  announcedTarget();
  RouterRecord& entry = *routers.find(routerMac(1));
  entry.address = 0x0100000A;
  entry.netmaskLength = 8;
  entry.gateway = 0x0200000A;
  entry.baudRate = 115200;
  entry.packages = {"system"};
  select(0);
  EXPECT_EQ((ParameterFields{false, "10.0.0.1", "8", "10.0.0.2", 115200, false, ""}), view.typed);
  EXPECT_TRUE(isMarked("system"));
  EXPECT_EQ("Selected 1 package(s)", view.title);
  EXPECT_TRUE(view.controls.install);
}

TEST_F(WorkflowSelection, EditsStayWithTheirEntry) {
  announcedTarget(1);
  announcedTarget(2);
  select(0);
  view.typed.address = "10.0.0.1";
  toggle("system");
  select(1);
  EXPECT_EQ("", view.typed.address);
  view.typed.address = "10.0.0.2";
  select(0);
  EXPECT_EQ("10.0.0.1", view.typed.address);
  EXPECT_EQ("Selected 1 package(s)", view.title);
  select(1);
  EXPECT_EQ("10.0.0.2", view.typed.address);
  EXPECT_EQ("Selected 0 package(s)", view.title);
}

TEST_F(WorkflowSelection, EditsAreParsedWithoutWarnings) {
  announcedTarget(1);
  announcedTarget(2);
  select(0);
  view.typed.address = "not an address";
  view.typed.netmask = "40";
  view.typed.gateway = "10.0.0.254";
  select(1);
  EXPECT_TRUE(person.said.empty());
  const RouterRecord& entry = *routers.find(routerMac(1));
  EXPECT_EQ(0u, entry.address);
  EXPECT_EQ(32, entry.netmaskLength);
}

// What is shown can belong to an entry that has just been replaced.
TEST_F(WorkflowSelection, FieldsAreNotStoredIntoAnEntryThatIsNotShown) {
  announcedTarget(1);
  announcedTarget(2);
  select(0);
  view.typed.address = "10.0.0.1";
  rows.select(1);
  workflow.selectionChanging();
  EXPECT_EQ(0u, routers.find(routerMac(2))->address);
}

TEST_F(WorkflowSelection, EntryThatAgesOutLeavesTheDefaults) {
  selectedTarget();
  toggle("system");
  clock.advance(61 * kSecond);
  workflow.poll();
  EXPECT_EQ("Packages", view.title);
  EXPECT_FALSE(view.controls.install);
  EXPECT_FALSE(isMarked("system"));
}

TEST_F(WorkflowSelection, ClickedPackageIsMarkedWithWhatItDependsOn) {
  selectedTarget();
  toggle("routing");
  EXPECT_TRUE(isMarked("routing"));
  EXPECT_TRUE(isMarked("system"));
  EXPECT_EQ("Selected 2 package(s)", view.title);
  EXPECT_EQ("routing depends on system (1.0 - any)", statusBar.shown.back());
}

TEST_F(WorkflowSelection, WhatAMarkedPackageDependsOnCannotBeUnmarked) {
  selectedTarget();
  toggle("routing");
  toggle("system");
  EXPECT_TRUE(isMarked("system"));
  toggle("routing");
  EXPECT_FALSE(isMarked("routing"));
  EXPECT_TRUE(isMarked("system"));
  toggle("system");
  EXPECT_EQ("Selected 0 package(s)", view.title);
}

TEST_F(WorkflowSelection, PackageWithAMissingDependencyCanBeMarked) {
  selectedTarget();
  toggle("wireless");
  EXPECT_EQ("Selected 1 package(s)", view.title);
}

TEST_F(WorkflowSelection, WithoutAnEntryAClickOnlyDescribes) {
  toggle("system");
  EXPECT_FALSE(isMarked("system"));
  EXPECT_EQ("system depends on nothing", statusBar.shown.back());
}

TEST_F(WorkflowSelection, RowsWithoutAPackageAreIgnored) {
  selectedTarget();
  const std::size_t shown = statusBar.shown.size();
  for (const int row : {-1, catalogue.count(), 1000}) {
    workflow.togglePackage(row);
    view.atMark = row;
    workflow.describePackage();
  }
  EXPECT_EQ(shown, statusBar.shown.size());
  EXPECT_EQ("Selected 0 package(s)", view.title);
}

TEST_F(WorkflowSelection, SelectionMarkIsDescribed) {
  view.atMark = rowOf("system");
  workflow.describePackage();
  EXPECT_EQ("system depends on nothing", statusBar.shown.back());
}

TEST_F(WorkflowSelection, AllAndNoneAreMarked) {
  selectedTarget();
  workflow.selectAllPackages();
  EXPECT_EQ("Selected 3 package(s)", view.title);
  workflow.selectNoPackages();
  EXPECT_EQ("Selected 0 package(s)", view.title);
}

TEST_F(WorkflowSelection, CheckBoxesStoreTheFieldsAndDecideWhatIsEnabled) {
  selectedTarget();
  view.typed.address = "10.0.0.1";
  view.typed.useScript = true;
  workflow.parametersClicked();
  EXPECT_EQ("10.0.0.1", view.typed.address);
  EXPECT_TRUE(view.controls.chooseScript);
  EXPECT_EQ(FieldState::kEnabled, view.controls.scriptFile);
  EXPECT_EQ(FieldState::kDisabled, view.controls.address);
  view.typed.keepConfiguration = true;
  workflow.parametersClicked();
  EXPECT_TRUE(routers.find(routerMac(1))->keepConfiguration);
  EXPECT_EQ(FieldState::kDisabled, view.controls.scriptFile);
  EXPECT_TRUE(view.controls.keepConfiguration);
}

TEST_F(WorkflowSelection, WithoutAnEntryACheckBoxChangesNothingElse) {
  view.typed.useScript = true;
  view.typed.address = "typed";
  workflow.parametersClicked();
  EXPECT_EQ("typed", view.typed.address);
  EXPECT_TRUE(view.typed.useScript);
}

TEST_F(WorkflowSelection, ChosenScriptGoesIntoItsFieldAndTheTrace) {
  selectedTarget();
  view.typed.address = "10.0.0.1";
  trace.clear();
  person.scripts = {"C:\\scripts\\first.rsc"};
  workflow.chooseScript();
  EXPECT_EQ("C:\\scripts\\first.rsc", view.typed.scriptFile);
  EXPECT_EQ("10.0.0.1", view.typed.address);
  EXPECT_EQ("selected: C:\\scripts\\first.rsc\n", trace.text());
  workflow.chooseScript();
  EXPECT_EQ("C:\\scripts\\first.rsc", view.typed.scriptFile);
}

TEST_F(WorkflowSelection, BrowsedFolderIsScannedAndKeepsTheChoice) {
  selectedTarget();
  toggle("system");
  const TempFolder other;
  other.write("newer.bdl",
              buildBdl({.name = "system", .version = versionWord(3, 0), .description = "Newer"}));
  person.folders = {other.path()};
  workflow.browse();
  EXPECT_EQ(folder.path(), person.proposals.at(0));
  EXPECT_EQ(other.path(), view.folderField);
  EXPECT_EQ(1, catalogue.count());
  EXPECT_TRUE(isMarked("system"));
  workflow.install();
  EXPECT_EQ(Names{"newer.bdl"}, routers.find(routerMac(1))->packageFiles);
}

TEST_F(WorkflowSelection, CancelledBrowserLeavesTheFolder) {
  workflow.browse();
  EXPECT_EQ(3, catalogue.count());
}

TEST_F(WorkflowSelection, TypedFolderIsScannedAndTypedEditsStay) {
  selectedTarget();
  view.typed.address = "10.0.0.1";
  const TempFolder empty;
  view.folderField = empty.path();
  workflow.folderEntered();
  EXPECT_EQ("No packages in this directory", statusBar.shown.back());
  EXPECT_EQ(0, catalogue.count());
  EXPECT_EQ("Selected 0 package(s)", view.title);
  EXPECT_EQ("10.0.0.1", view.typed.address);
}

TEST_F(WorkflowSelection, ChoiceSurvivesAFolderWithoutItsPackages) {
  selectedTarget();
  toggle("routing");
  const TempFolder empty;
  workflow.openFolder(empty.path());
  workflow.openFolder(folder.path());
  EXPECT_EQ("Selected 2 package(s)", view.title);
}

}  // namespace omniset::test
