#include "ui/workflow/control_states.h"

#include <gtest/gtest.h>

namespace omniset::test {

namespace {

RouterRecord entryWith(RouterStatus status) {
  RouterRecord entry;
  entry.status = status;
  return entry;
}

ControlStates statesOf(const RouterRecord& entry) {
  return controlStates(&entry, {});
}

}  // namespace

TEST(ControlStates, WithoutAnEntryOnlyAChosenSetCanBeDeleted) {
  ControlStates expected;
  EXPECT_EQ(expected, controlStates(nullptr, {}));
  expected.deleteSet = true;
  EXPECT_EQ(expected, controlStates(nullptr, {true, false}));
}

TEST(ControlStates, InstallActsOnReadyAndRebootOnWaitingEntries) {
  EXPECT_TRUE(statesOf(entryWith(RouterStatus::kReady)).install);
  EXPECT_EQ("Install", statesOf(entryWith(RouterStatus::kReady)).installLabel);
  EXPECT_TRUE(statesOf(entryWith(RouterStatus::kWaitingReboot)).install);
  EXPECT_EQ("Reboot", statesOf(entryWith(RouterStatus::kWaitingReboot)).installLabel);
  for (const RouterStatus status :
       {RouterStatus::kInstalling, RouterStatus::kFinished, RouterStatus::kFailed}) {
    EXPECT_FALSE(statesOf(entryWith(status)).install);
    EXPECT_EQ("Install", statesOf(entryWith(status)).installLabel);
  }
}

TEST(ControlStates, RequestCanBeEditedUnlessTheInstallationIsUnderWay) {
  for (const RouterStatus status :
       {RouterStatus::kReady, RouterStatus::kFinished, RouterStatus::kFailed}) {
    const ControlStates states = statesOf(entryWith(status));
    EXPECT_EQ(FieldState::kEnabled, states.address);
    EXPECT_TRUE(states.keepConfiguration && states.baudRate && states.useScript && states.marks);
    EXPECT_FALSE(states.cancel);
  }
  for (const RouterStatus status : {RouterStatus::kInstalling, RouterStatus::kWaitingReboot}) {
    const ControlStates states = statesOf(entryWith(status));
    EXPECT_EQ(FieldState::kReadOnly, states.address);
    EXPECT_EQ(FieldState::kReadOnly, states.scriptFile);
    EXPECT_FALSE(states.keepConfiguration || states.baudRate || states.useScript || states.marks ||
                 states.chooseScript);
    EXPECT_TRUE(states.cancel);
  }
}

TEST(ControlStates, KeptConfigurationLeavesNothingElseToSet) {
  RouterRecord entry = entryWith(RouterStatus::kReady);
  entry.keepConfiguration = true;
  entry.useOwnScript = true;
  const ControlStates states = statesOf(entry);
  EXPECT_TRUE(states.keepConfiguration);
  EXPECT_EQ(FieldState::kDisabled, states.address);
  EXPECT_EQ(FieldState::kDisabled, states.scriptFile);
  EXPECT_FALSE(states.baudRate || states.useScript || states.chooseScript);
}

TEST(ControlStates, OwnScriptReplacesAddressAndSpeed) {
  RouterRecord entry = entryWith(RouterStatus::kReady);
  entry.useOwnScript = true;
  const ControlStates states = statesOf(entry);
  EXPECT_EQ(FieldState::kEnabled, states.scriptFile);
  EXPECT_TRUE(states.chooseScript && states.useScript);
  EXPECT_EQ(FieldState::kDisabled, states.address);
  EXPECT_FALSE(states.baudRate);
}

TEST(ControlStates, DrivesScriptStillGetsTheSpeed) {
  RouterRecord entry = entryWith(RouterStatus::kReady);
  entry.kind = kLocalDrive;
  entry.useOwnScript = true;
  EXPECT_TRUE(statesOf(entry).baudRate);
}

TEST(ControlStates, DriveIsWipedSoNothingCanBeKeptAndHasNoAddress) {
  RouterRecord entry = entryWith(RouterStatus::kReady);
  entry.kind = kLocalDrive;
  const ControlStates states = statesOf(entry);
  EXPECT_FALSE(states.keepConfiguration);
  EXPECT_EQ(FieldState::kDisabled, states.address);
  EXPECT_TRUE(states.baudRate && states.useScript && states.install);
}

TEST(ControlStates, CancelMakesADriveWithAnOutcomeReadyAgain) {
  RouterRecord entry = entryWith(RouterStatus::kReady);
  entry.kind = kLocalDrive;
  EXPECT_FALSE(statesOf(entry).cancel);
  for (const RouterStatus outcome : {RouterStatus::kFinished, RouterStatus::kFailed}) {
    entry.status = outcome;
    entry.kind = kLocalDrive;
    EXPECT_TRUE(statesOf(entry).cancel);
    EXPECT_FALSE(statesOf(entry).install);
    entry.kind = kNetworkTarget;
    EXPECT_FALSE(statesOf(entry).cancel);
  }
}

TEST(ControlStates, SelectionThatIsTheChosenSetNeedNotBeSaved) {
  const RouterRecord entry = entryWith(RouterStatus::kReady);
  EXPECT_TRUE(controlStates(&entry, {false, false}).saveSet);
  EXPECT_TRUE(controlStates(&entry, {true, false}).saveSet);
  EXPECT_FALSE(controlStates(&entry, {true, true}).saveSet);
}

TEST(Progress, IsTheShareOfThePackagesBytes) {
  RouterRecord entry = entryWith(RouterStatus::kInstalling);
  entry.packageBytes = 3'000'000'000;
  entry.bytesSent = 1'500'000'000;
  EXPECT_EQ(50, progressOf(entry));
}

TEST(Progress, NeverLeavesItsRange) {
  RouterRecord entry = entryWith(RouterStatus::kInstalling);
  EXPECT_EQ(0, progressOf(entry));
  entry.packageBytes = 10;
  entry.bytesSent = 2000;
  EXPECT_EQ(100, progressOf(entry));
  entry.bytesSent = -5;
  EXPECT_EQ(0, progressOf(entry));
}

TEST(Progress, IsWholeOnceEverythingWasSentAndNoneAfterAFailure) {
  EXPECT_EQ(100, progressOf(entryWith(RouterStatus::kWaitingReboot)));
  EXPECT_EQ(100, progressOf(entryWith(RouterStatus::kFinished)));
  EXPECT_EQ(0, progressOf(entryWith(RouterStatus::kFailed)));
}

}  // namespace omniset::test
