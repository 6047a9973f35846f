#include "tests/install/installer_fixture.h"

namespace omniset::test {
namespace {

using InstallerAnnouncements = InstallerFixture;

TEST_F(InstallerAnnouncements, MakeARecordOfTheTarget) {
  hear(ScriptedTarget().announcement("branch office"));
  const auto record = installer.access().takeAnnouncement();
  ASSERT_TRUE(record);
  EXPECT_EQ(record->kind, 1);
  EXPECT_EQ(record->mac, kTargetMac);
  EXPECT_EQ(record->label, "branch office");
  EXPECT_EQ(record->status, RouterStatus::kReady);
  EXPECT_EQ(static_cast<int>(record->status), 1);
  EXPECT_EQ(record->lastSeen, clock.now());
  EXPECT_EQ(record->bytesSent, 0);
  EXPECT_TRUE(record->packageFiles.empty());
}

TEST_F(InstallerAnnouncements, AreTakenInTheirOrderOnceEach) {
  hear(ScriptedTarget(kSecondMac).announcement("first"));
  hear(ScriptedTarget(kTargetMac).announcement("second"));
  hear(ScriptedTarget(kSecondMac).announcement("first"));
  auto access = installer.access();
  EXPECT_EQ(access.takeAnnouncement()->mac, kSecondMac);
  EXPECT_EQ(access.takeAnnouncement()->mac, kTargetMac);
  EXPECT_EQ(access.takeAnnouncement()->mac, kSecondMac);
  EXPECT_FALSE(access.takeAnnouncement());
}

TEST_F(InstallerAnnouncements, OtherTextsToAllAreIgnored) {
  hear(makeFrame(kTargetMac, kNobody, 1, kNoAck, "HELO\na\nb\nlabel\n"));
  hear(makeFrame(kTargetMac, kNobody, 1, kNoAck));
  EXPECT_FALSE(installer.access().takeAnnouncement());
  EXPECT_EQ(trace.text(), "");
}

TEST_F(InstallerAnnouncements, SentToTheInstallerItselfAreNone) {
  hear(makeFrame(kTargetMac, kInstallerMac, 1, kNoAck, "DSCV\na\nb\nlabel\n"));
  EXPECT_FALSE(installer.access().takeAnnouncement());
}

TEST_F(InstallerAnnouncements, StillInFlightAfterThreeSecondsLeaveTheSession) {
  install(kTargetMac);
  idle(3);
  trace.clear();
  hear(ScriptedTarget().announcement());
  EXPECT_TRUE(hasSession(kTargetMac));
  EXPECT_FALSE(trace.contains("~Installator()"));
  EXPECT_TRUE(installer.access().takeAnnouncement());
}

TEST_F(InstallerAnnouncements, AfterSixSecondsDestroyTheSessionOfATargetThatStartedOver) {
  install(kTargetMac);
  idle(6);
  trace.clear();
  deliver(ScriptedTarget().announcement("again"));
  idle(1);
  EXPECT_FALSE(hasSession(kTargetMac));
  EXPECT_TRUE(trace.text().ends_with("~Installator()\n"));
  EXPECT_TRUE(temporary.names().empty());
  EXPECT_EQ(installer.access().takeAnnouncement()->label, "again");
}

TEST_F(InstallerAnnouncements, AfterExactlyFiveSecondsStillLeaveTheSession) {
  install(kTargetMac);
  clock.advance(5 * kSecond);
  hear(ScriptedTarget().announcement());
  EXPECT_TRUE(hasSession(kTargetMac));
  clock.advance(1);
  hear(ScriptedTarget().announcement());
  EXPECT_FALSE(hasSession(kTargetMac));
}

TEST_F(InstallerAnnouncements, DoNotRenewTheTimeOfTheSession) {
  install(kTargetMac);
  clock.advance(4 * kSecond);
  hear(ScriptedTarget().announcement());
  clock.advance(2 * kSecond);
  hear(ScriptedTarget().announcement());
  EXPECT_FALSE(hasSession(kTargetMac));
}

TEST_F(InstallerAnnouncements, OfOneTargetLeaveTheSessionsOfOthers) {
  install(kTargetMac);
  install(kSecondMac);
  clock.advance(10 * kSecond);
  hear(ScriptedTarget(kSecondMac).announcement());
  EXPECT_TRUE(hasSession(kTargetMac));
  EXPECT_FALSE(hasSession(kSecondMac));
}

TEST_F(InstallerAnnouncements, EndFinishedSessionsToo) {
  install(kTargetMac);
  idle(62);
  ASSERT_EQ(record(kTargetMac).status, RouterStatus::kFailed);
  hear(ScriptedTarget().announcement());
  EXPECT_FALSE(hasSession(kTargetMac));
}

TEST_F(InstallerAnnouncements, DestroyedSessionsTimerIsGone) {
  install(kTargetMac);
  clock.advance(6 * kSecond);
  hear(ScriptedTarget().announcement());
  const std::size_t count = network->sent.size();
  idle(5);
  EXPECT_EQ(network->sent.size(), count);
  EXPECT_EQ(network->waits.back(), kSecond);
}

TEST_F(InstallerAnnouncements, FloodIsBoundedAndLaterOnesAreHeardAgain) {
  for (int i = 0; i < 5000; ++i) hear(ScriptedTarget().announcement());
  int taken = 0;
  while (installer.access().takeAnnouncement()) ++taken;
  EXPECT_EQ(taken, 4096);
  hear(ScriptedTarget().announcement());
  EXPECT_TRUE(installer.access().takeAnnouncement());
}

}  // namespace
}  // namespace omniset::test
