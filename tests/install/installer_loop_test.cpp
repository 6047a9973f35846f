// One turn of the event loop: timers, the wait, and where a datagram goes.
#include "core/error.h"
#include "tests/install/installer_fixture.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using InstallerLoop = InstallerFixture;

TEST_F(InstallerLoop, EndpointIsOpenedOnPort5000WithoutATraceName) {
  EXPECT_THAT(network->calls, ElementsAre("open", "allowBroadcast", "bind 5000"));
}

TEST_F(InstallerLoop, AdaptersAreTracedAndTheChosenOneIsTheSource) {
  trace.clear();
  const auto other = std::make_shared<FakeNetwork>();
  RouterInstaller second(
      1, InstallerServices{interfaces, std::make_unique<FakeUdpSocket>(other), clock, tempFiles});
  EXPECT_EQ(trace.text(), "iface 0: 02:00:00:00:00:01\niface 1: 02:00:00:0A:0B:0C\n");
  RouterRecord record;
  record.mac = kTargetMac;
  second.access().install(record, packages.path());
  second.step();
  ASSERT_EQ(other->sent.size(), 1u);
  EXPECT_EQ(frameFrom(other->sent[0].bytes).header().source, kStrangerMac);
}

TEST_F(InstallerLoop, FirstAdapterIsTheSourceOfAllFrames) {
  install(kTargetMac);
  idle(3);
  ASSERT_EQ(network->sent.size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(sent(i).header().source, kInstallerMac);
}

TEST_F(InstallerLoop, SocketThatCannotBeBoundRaises) {
  const auto other = std::make_shared<FakeNetwork>();
  other->failing = "bind";
  EXPECT_THROW(
      RouterInstaller(0, InstallerServices{interfaces, std::make_unique<FakeUdpSocket>(other),
                                           clock, tempFiles}),
      SocketExc);
}

TEST_F(InstallerLoop, WithoutSessionsItWaitsASecond) {
  idle(2);
  EXPECT_THAT(network->waits, ElementsAre(kSecond, kSecond));
}

TEST_F(InstallerLoop, WaitsForTheNearestDeadline) {
  install(kTargetMac);
  turn();
  clock.advance(700 * kMillisecond);
  install(kSecondMac);
  idle(2);
  EXPECT_THAT(network->waits, ElementsAre(kSecond, 300 * kMillisecond, 700 * kMillisecond));
}

TEST_F(InstallerLoop, DeadlineThatIsReachedFires) {
  install(kTargetMac);
  idle(2);
  EXPECT_EQ(network->sent.size(), 2u);
}

// An acknowledgement that is there already makes the repetition needless.
TEST_F(InstallerLoop, WhatHasArrivedIsLookedAtBeforeDueTimersFire) {
  install(kTargetMac);
  turn();
  clock.advance(900 * kMillisecond);
  hear(ScriptedTarget(kStrangerMac).announcement());
  clock.advance(100 * kMillisecond);
  hear(ScriptedTarget(kStrangerMac).announcement());
  EXPECT_EQ(network->sent.size(), 1u);
  EXPECT_EQ(network->waits.back(), 1);
  idle(2);
  EXPECT_EQ(network->sent.size(), 2u);
}

TEST_F(InstallerLoop, TimersFireAfterAQuarterOfASecondHoweverMuchArrives) {
  install(kTargetMac);
  turn();
  clock.advance(900 * kMillisecond);
  for (int i = 0; i < 25; ++i) {
    EXPECT_EQ(network->sent.size(), 1u);
    hear(ScriptedTarget(kStrangerMac).announcement());
    clock.advance(10 * kMillisecond);
  }
  hear(ScriptedTarget(kStrangerMac).announcement());
  EXPECT_EQ(network->sent.size(), 2u);
}

TEST_F(InstallerLoop, DatagramShortensTheWaitWithoutFiringTimersEarly) {
  install(kTargetMac);
  turn();
  clock.advance(500 * kMillisecond);
  hear(ScriptedTarget(kStrangerMac).announcement());
  EXPECT_EQ(network->waits.back(), 500 * kMillisecond);
  EXPECT_EQ(network->sent.size(), 1u);
}

TEST_F(InstallerLoop, WaitIsNeverLongerThanASecondThoughARetransmissionMayBe) {
  packages.write("a.bdl", "12345");
  install(kTargetMac, {"a.bdl"});
  turn();
  ScriptedTarget target;
  target.hears(sent(0));
  hear(target.says("YACK\n"));
  hear(target.says("STRT\n"));
  idle(1);
  turn();
  ASSERT_TRUE(target.hears(sent(network->sent.size() - 1)));
  hear(target.acknowledges());
  network->waits.clear();
  idle(11);
  constexpr Micros kMs = kMillisecond;
  EXPECT_THAT(network->waits,
              ElementsAre(10 * kMs, 20 * kMs, 40 * kMs, 80 * kMs, 160 * kMs, 320 * kMs, 640 * kMs,
                          kSecond, 280 * kMs, kSecond, 280 * kMs));
}

TEST_F(InstallerLoop, ReachedDeadlineStillWaitsAMicrosecond) {
  install(kTargetMac);
  idle(60);
  network->waits.clear();
  idle(1);
  EXPECT_EQ(record(kTargetMac).status, RouterStatus::kFailed);
  EXPECT_THAT(network->waits, ElementsAre(1));
}

TEST_F(InstallerLoop, TimersFireInTheOrderOfTheMacAddresses) {
  install(kSecondMac);
  install(kTargetMac);
  idle(1);
  ASSERT_EQ(network->sent.size(), 2u);
  EXPECT_EQ(sent(0).header().destination, kTargetMac);
  EXPECT_EQ(sent(1).header().destination, kSecondMac);
}

TEST_F(InstallerLoop, DatagramFromAnotherPortIsIgnored) {
  network->deliver(ScriptedTarget().announcement().datagram(), 5001);
  idle(1);
  EXPECT_FALSE(installer.access().takeAnnouncement());
}

TEST_F(InstallerLoop, DamagedDatagramsAreIgnoredSilently) {
  install(kTargetMac);
  turn();
  trace.clear();
  const LinkFrame answer = makeFrame(kTargetMac, kInstallerMac, 2, 1, "YACK\n");
  network->deliver({});
  network->deliver(answer.datagram().first(19));
  network->deliver(answer.datagram().first(24));
  network->deliver(std::span(answer.bytes).first(26));
  network->deliver(std::vector<std::uint8_t>(5000, 0xFF));
  idle(5);
  EXPECT_THAT(network->toReceive, IsEmpty());
  EXPECT_EQ(record(kTargetMac).statusText, "Sending offer...");
  EXPECT_EQ(trace.text(), "");
}

TEST_F(InstallerLoop, FrameFromNobodyIsIgnored) {
  hear(makeFrame(kNobody, kNobody, 1, kNoAck, "DSCV\na\nb\nlabel\n"));
  hear(makeFrame(kNobody, kInstallerMac, 1, kNoAck, "YACK\n"));
  EXPECT_FALSE(installer.access().takeAnnouncement());
  EXPECT_EQ(trace.text(), "");
}

TEST_F(InstallerLoop, FrameFromAMacWithoutASessionIsIgnored) {
  install(kTargetMac);
  turn();
  trace.clear();
  hear(makeFrame(kSecondMac, kInstallerMac, 2, 1, "YACK\n"));
  EXPECT_EQ(record(kTargetMac).statusText, "Sending offer...");
  EXPECT_EQ(network->sent.size(), 1u);
  EXPECT_EQ(trace.text(), "");
}

TEST_F(InstallerLoop, OwnBroadcastComingBackIsIgnored) {
  install(kTargetMac);
  turn();
  trace.clear();
  hear(sent(0));
  EXPECT_EQ(record(kTargetMac).statusText, "Sending offer...");
  EXPECT_EQ(trace.text(), "");
}

TEST_F(InstallerLoop, TargetsFrameToAnotherInstallerDoesNotMoveItsSession) {
  install(kTargetMac);
  turn();
  hear(makeFrame(kTargetMac, kStrangerMac, 2, 1, "YACK\n"));
  EXPECT_EQ(record(kTargetMac).statusText, "Sending offer...");
}

TEST_F(InstallerLoop, SendFailureFailsTheSessionAndTheLoopGoesOn) {
  install(kTargetMac);
  network->failing = "sendTo";
  idle(1);
  network->failing.clear();
  EXPECT_EQ(record(kTargetMac).statusText, "Installation failed: could not connect to router");
  install(kSecondMac);
  idle(1);
  EXPECT_EQ(network->sent.size(), 1u);
}

}  // namespace
}  // namespace omniset::test
