#include <algorithm>
#include <atomic>
#include <thread>

#include "workflow_fixture.h"

namespace omniset::test {

namespace {
using Said = std::vector<std::string>;

const std::string kAddressWarning =
    "Warning: No address will be set unless both address and netmask is specified. Proceed?";
const std::string kGatewayWarning =
    "Warning: No gateway will be set if address is invalid. Proceed?";

struct WorkflowInstall : WorkflowTest {
  void selectTargetWithSystem() {
    selectedTarget();
    toggle("system");
  }
  const RouterRecord& entry() { return *routers.find(routerMac(1)); }
};

}  // namespace

TEST_F(WorkflowInstall, RouterIsInstalledRebootedAndFinished) {
  selectedTarget();
  toggle("routing");
  view.typed.address = "192.168.88.1";
  view.typed.netmask = "24";
  workflow.install();
  EXPECT_EQ("Installing", statusOf(0));
  EXPECT_EQ("Sending offer...", view.statusLine);
  ASSERT_TRUE(turnUntil(RouterStatus::kWaitingReboot));
  EXPECT_EQ("Waiting reboot", statusOf(0));
  EXPECT_EQ("Reboot", view.controls.installLabel);
  EXPECT_EQ("Remove floppy from router and press reboot", view.statusLine);
  EXPECT_EQ(100, view.progress);
  workflow.install();
  ASSERT_TRUE(turnUntil(RouterStatus::kFinished));
  EXPECT_EQ("OK", statusOf(0));
  EXPECT_EQ("Installation finished successfully", view.statusLine);
  EXPECT_EQ("Install", view.controls.installLabel);
  EXPECT_EQ(3, targets[0].filesTaken);
  EXPECT_TRUE(person.said.empty());
}

TEST_F(WorkflowInstall, WithoutASelectedEntryNothingHappens) {
  announcedTarget();
  workflow.install();
  workflow.cancel();
  EXPECT_TRUE(person.said.empty());
  EXPECT_EQ("Ready", statusOf(0));
}

TEST_F(WorkflowInstall, WithoutAPackageIsRefused) {
  selectedTarget();
  workflow.install();
  EXPECT_EQ(Said{"Cannot install: No packages selected"}, person.said);
  EXPECT_EQ(Operator::Icon::kError, person.icons.at(0));
  EXPECT_EQ("Ready", statusOf(0));
  EXPECT_EQ(nullptr, sets.find(kPreviousInstall));
}

TEST_F(WorkflowInstall, PackagesThatTheFolderLacksDoNotCountAsSelected) {
  selectedTarget();
  sets.add("gone", {"no such package"});
  view.chosen = "gone";
  workflow.applyChosenSet();
  workflow.install();
  EXPECT_EQ(Said{"Cannot install: No packages selected"}, person.said);
}

TEST_F(WorkflowInstall, AddressWithoutNetmaskIsWarnedOf) {
  selectTargetWithSystem();
  view.typed.address = "10.0.0.1";
  workflow.install();
  EXPECT_EQ(Said{kAddressWarning}, person.said);
  EXPECT_EQ("Installing", statusOf(0));
}

TEST_F(WorkflowInstall, NetmaskWithoutAddressIsWarnedOf) {
  selectTargetWithSystem();
  view.typed.netmask = "24";
  workflow.install();
  EXPECT_EQ(Said{kAddressWarning}, person.said);
}

TEST_F(WorkflowInstall, GatewayAloneHasItsWarningOnly) {
  selectTargetWithSystem();
  view.typed.gateway = "10.0.0.254";
  workflow.install();
  EXPECT_EQ(Said{kGatewayWarning}, person.said);
}

TEST_F(WorkflowInstall, GatewayAndHalfAnAddressHaveBothWarningsInOrder) {
  selectTargetWithSystem();
  view.typed.address = "10.0.0.1";
  view.typed.gateway = "10.0.0.254";
  workflow.install();
  EXPECT_EQ((Said{kAddressWarning, kGatewayWarning}), person.said);
}

TEST_F(WorkflowInstall, AnsweringNoChangesNothing) {
  selectTargetWithSystem();
  view.typed.address = "10.0.0.1";
  view.typed.gateway = "10.0.0.254";
  person.answers = {true, false};
  const RouterRecord before = entry();
  const ParameterFields fields = view.typed;
  workflow.install();
  EXPECT_EQ("Ready", statusOf(0));
  EXPECT_EQ(before.address, entry().address);
  EXPECT_EQ(before.packageFiles, entry().packageFiles);
  EXPECT_EQ(fields, view.typed);
  EXPECT_EQ(nullptr, sets.find(kPreviousInstall));
  EXPECT_EQ(0u, remembered.address);
}

TEST_F(WorkflowInstall, EntryThatVanishesDuringAQuestionIsNotInstalled) {
  selectTargetWithSystem();
  view.typed.address = "10.0.0.1";
  person.whileAsked = [&] {
    clock.advance(61 * kSecond);
    workflow.poll();
  };
  workflow.install();
  EXPECT_EQ(0u, routers.count());
  EXPECT_EQ(nullptr, installer.access().record(routerMac(1)));
}

// The question was about these parameters, whatever is selected when it is answered.
TEST_F(WorkflowInstall, WhatWasConfirmedIsInstalledEvenIfTheRowWasReplacedMeanwhile) {
  PlayedTarget& target = selectedTarget();
  toggle("system");
  view.typed.address = "10.0.0.1";
  person.whileAsked = [&] {
    clock.advance(61 * kSecond);
    workflow.poll();
    target.announce();
    turn();
  };
  workflow.install();
  const auto access = installer.access();
  const RouterRecord* session = access.record(routerMac(1));
  ASSERT_NE(nullptr, session);
  EXPECT_EQ("10.0.0.1", fieldsOf(*session).address);
  EXPECT_EQ(std::vector<std::string>{"system.bdl"}, session->packageFiles);
}

TEST_F(WorkflowInstall, FolderThatIsLoadedAnewDuringAQuestionDoesNotChangeWhatIsInstalled) {
  selectTargetWithSystem();
  view.typed.address = "10.0.0.1";
  const TempFolder other;
  other.write("other.bdl", buildBdl({.name = "other", .description = "Another"}));
  person.whileAsked = [&] { workflow.openFolder(other.path()); };
  workflow.install();
  EXPECT_EQ(std::vector<std::string>{"system.bdl"}, entry().packageFiles);
  ASSERT_TRUE(turnUntil(RouterStatus::kWaitingReboot));
}

// Between a selection's change and the refresh that was posted for it.
TEST_F(WorkflowInstall, FieldsOfAnotherEntryAreNotTakenForTheSelectedOne) {
  announcedTarget(1);
  announcedTarget(2);
  select(0);
  view.typed.address = "10.0.0.1";
  view.typed.netmask = "24";
  workflow.selectionChanging();
  rows.select(1);
  workflow.selectAllPackages();
  workflow.install();
  EXPECT_EQ(0u, routers.find(routerMac(2))->address);
  EXPECT_EQ("Installing", statusOf(1));
}

TEST_F(WorkflowInstall, FilesGoInTheOrderOfTheirDependencies) {
  selectedTarget();
  toggle("routing");
  workflow.install();
  EXPECT_EQ((std::vector<std::string>{"system.bdl", "routing.bdl"}), entry().packageFiles);
  EXPECT_EQ(catalogue.sizeOf("system.bdl") + catalogue.sizeOf("routing.bdl"), entry().packageBytes);
}

TEST_F(WorkflowInstall, ProgressFollowsTheBytesOfTheSelectedPackages) {
  selectTargetWithSystem();
  workflow.install();
  int last = 0;
  bool between = false;
  while (entry().status == RouterStatus::kInstalling) {
    turn();
    EXPECT_GE(view.progress, last);
    last = view.progress;
    between = between || (last > 0 && last < 100);
  }
  EXPECT_TRUE(between);
  EXPECT_EQ(100, last);
}

TEST_F(WorkflowInstall, InstalledPackagesBecomeThePreviousInstall) {
  selectTargetWithSystem();
  workflow.install();
  EXPECT_EQ(std::vector<std::string>{"system"}, set(kPreviousInstall));
  EXPECT_EQ(std::vector<std::string>{kPreviousInstall}, view.sets);
}

TEST_F(WorkflowInstall, PreviousInstallIsReplacedAndListedOnce) {
  selectTargetWithSystem();
  workflow.install();
  addTarget(2).announce();
  turn();
  select(1);
  toggle("routing");
  workflow.install();
  auto names = set(kPreviousInstall);
  std::sort(names.begin(), names.end());
  EXPECT_EQ((std::vector<std::string>{"routing", "system"}), names);
  EXPECT_EQ(std::vector<std::string>{kPreviousInstall}, view.sets);
}

TEST_F(WorkflowInstall, NextRouterStartsWithTheParametersAndPackagesOfThisOne) {
  selectTargetWithSystem();
  view.typed = {false, "10.0.0.1", "24", "10.0.0.254", 115200, false, "C:\\my.rsc"};
  workflow.install();
  announcedTarget(2);
  const RouterRecord& next = *routers.find(routerMac(2));
  EXPECT_EQ(view.typed, fieldsOf(next));
  EXPECT_EQ(std::vector<std::string>{"system"}, next.packages);
}

TEST_F(WorkflowInstall, WhileItInstallsNothingCanBeChanged) {
  selectTargetWithSystem();
  view.typed.address = "10.0.0.1";
  view.typed.netmask = "24";
  workflow.install();
  turn();
  EXPECT_EQ(FieldState::kReadOnly, view.controls.address);
  toggle("routing");
  workflow.selectNoPackages();
  view.typed.address = "10.9.9.9";
  workflow.parametersClicked();
  workflow.selectionChanging();
  EXPECT_EQ(std::vector<std::string>{"system"}, entry().packages);
  EXPECT_EQ("10.0.0.1", fieldsOf(entry()).address);
  workflow.install();
  EXPECT_EQ("Installing", statusOf(0));
}

TEST_F(WorkflowInstall, CancelPutsTheRowBackToReady) {
  selectTargetWithSystem();
  workflow.install();
  turn();
  workflow.cancel();
  turn();
  EXPECT_EQ("Ready", statusOf(0));
  EXPECT_EQ("", view.statusLine);
  EXPECT_EQ(0, view.progress);
  EXPECT_TRUE(view.controls.install);
  EXPECT_EQ(nullptr, installer.access().record(routerMac(1)));
  EXPECT_TRUE(temporary.names().empty());
}

TEST_F(WorkflowInstall, CancelOfARouterThatWaitsForItsRebootWorksToo) {
  selectTargetWithSystem();
  workflow.install();
  ASSERT_TRUE(turnUntil(RouterStatus::kWaitingReboot));
  workflow.cancel();
  EXPECT_EQ("Ready", statusOf(0));
  EXPECT_EQ("Install", view.controls.installLabel);
}

TEST_F(WorkflowInstall, ScriptThatCannotBeOpenedFailsTheRouterOnly) {
  selectTargetWithSystem();
  view.typed.useScript = true;
  view.typed.scriptFile = folder.path() + "/no such script";
  workflow.install();
  EXPECT_EQ("Failed", statusOf(0));
  EXPECT_EQ("Installation failed: Could not open script", view.statusLine);
  EXPECT_FALSE(view.controls.install);
}

TEST_F(WorkflowInstall, ScriptPathCountsOnlyWithItsBoxChecked) {
  selectTargetWithSystem();
  view.typed.scriptFile = folder.path() + "/no such script";
  workflow.install();
  EXPECT_EQ("Installing", statusOf(0));
  EXPECT_TRUE(installer.access().record(routerMac(1))->scriptPath.empty());
}

TEST_F(WorkflowInstall, FailedRouterThatAnnouncesItselfAnewIsReadyAndStillSelected) {
  PlayedTarget& target = selectedTarget();
  toggle("system");
  view.typed.useScript = true;
  view.typed.scriptFile = "no such script";
  workflow.install();
  ASSERT_EQ("Failed", statusOf(0));
  clock.advance(6 * kSecond);
  target.announce();
  turn();
  EXPECT_EQ("Ready", statusOf(0));
  ASSERT_NE(nullptr, routers.selected());
  EXPECT_TRUE(view.controls.install);
  view.typed.useScript = false;
  workflow.install();
  ASSERT_TRUE(turnUntil(RouterStatus::kWaitingReboot));
}

TEST_F(WorkflowInstall, RouterThatStartsOverDuringItsInstallationIsReadyAgain) {
  PlayedTarget& target = selectedTarget();
  toggle("system");
  workflow.install();
  turn();
  turn();
  clock.advance(6 * kSecond);
  target.announce();
  ASSERT_TRUE(turnUntil(RouterStatus::kReady));
  EXPECT_EQ("Ready", statusOf(0));
  EXPECT_EQ(nullptr, installer.access().record(routerMac(1)));
  workflow.install();
  ASSERT_TRUE(turnUntil(RouterStatus::kWaitingReboot));
}

// An announcement in flight makes a fresh row, which at once shows the running session again.
TEST_F(WorkflowInstall, AnnouncementInFlightKeepsTheRequestThatIsInstalled) {
  PlayedTarget& first = selectedTarget(1);
  first.obeys = PlayedTarget::Obeys::kNothing;
  toggle("system");
  view.typed.address = "10.0.0.1";
  view.typed.netmask = "24";
  workflow.install();
  selectedTarget(2);
  view.typed.address = "10.0.0.2";
  workflow.install();
  first.announce();
  turn();
  EXPECT_EQ("Installing", statusOf(1));
  EXPECT_EQ("10.0.0.1", fieldsOf(entry()).address);
  EXPECT_EQ(std::vector<std::string>{"system.bdl"}, entry().packageFiles);
}

// The target was never offered anything: it goes on announcing itself while the operator corrects
// what was missing on this side.
TEST_F(WorkflowInstall, CorrectionsOfAFailedRouterThatStillAnnouncesItselfStay) {
  PlayedTarget& target = selectedTarget();
  target.obeys = PlayedTarget::Obeys::kNothing;
  toggle("system");
  view.typed.useScript = true;
  view.typed.scriptFile = "missing.rsc";
  workflow.install();
  ASSERT_EQ("Failed", statusOf(0));
  view.typed.address = "10.0.0.";
  view.typed.scriptFile = "corrected.rsc";
  for (int second = 0; second < 8; ++second) {
    clock.advance(kSecond);
    target.announce();
    turn();
    rows.select(0);
    workflow.selectionChanged();
  }
  EXPECT_EQ("Ready", statusOf(0));
  EXPECT_EQ("corrected.rsc", view.typed.scriptFile);
  EXPECT_EQ("10.0.0.", view.typed.address);
  EXPECT_EQ("Installation failed: Could not open script", view.statusLine);
  EXPECT_TRUE(view.controls.install);
}

TEST_F(WorkflowInstall, BusyInstallerCostsATickOnly) {
  selectedTarget();
  std::atomic<bool> held = false;
  std::atomic<bool> done = false;
  std::thread installerThread([&] {
    const auto access = installer.access();
    held = true;
    while (!done) std::this_thread::yield();
  });
  while (!held) std::this_thread::yield();
  clock.advance(61 * kSecond);
  workflow.poll();
  done = true;
  installerThread.join();
  EXPECT_EQ(1u, routers.count());
  EXPECT_TRUE(trace.contains("the installer is busy: Mutex wait timeouted"));
}

TEST_F(WorkflowInstall, EndOfTheInstallerIsToldOnceAndWhenSomethingIsToBeInstalled) {
  selectTargetWithSystem();
  workflow.installerEnded();
  workflow.installerEnded();
  ASSERT_EQ(1u, person.said.size());
  EXPECT_TRUE(person.said[0].starts_with("Error: The network failed")) << person.said[0];
  workflow.install();
  EXPECT_EQ(2u, person.said.size());
  EXPECT_EQ("Ready", statusOf(0));
}

TEST_F(WorkflowInstall, SystemFailureOfOneRouterStaysWithIt) {
  selectTargetWithSystem();
  tempFiles.failing = true;
  workflow.install();
  EXPECT_EQ("Failed", statusOf(0));
  EXPECT_TRUE(view.statusLine.starts_with("Installation failed: GetTempPath")) << view.statusLine;
}

TEST_F(WorkflowInstall, TimerTouchesNothingWhenNothingChanges) {
  selectTargetWithSystem();
  turn();
  const int updates = view.updates;
  const int shown = view.timesFieldsShown;
  for (int i = 0; i < 10; ++i) turn();
  EXPECT_EQ(updates, view.updates);
  EXPECT_EQ(shown, view.timesFieldsShown);
}

}  // namespace omniset::test
