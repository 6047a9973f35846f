// After the transfer: the reboot, and what a finished session does.
#include "tests/install/session_fixture.h"

namespace omniset::test {
namespace {

struct SessionReboot : SessionFixture {
  SessionReboot() {
    packages.write("a.bdl", "12345");
    record.packageFiles = {"a.bdl"};
    startTo(State::kWaitingReboot);
    before = link.sentCount();
  }
  std::size_t sentCount() const { return link.sentCount() - before; }

  void expectFinished(const std::string& text) const {
    EXPECT_EQ(session->state(), State::kFinished);
    EXPECT_EQ(state().status, RouterStatus::kFinished);
    EXPECT_EQ(state().statusText, text);
    EXPECT_EQ(state().bytesSent, 5);
  }

  std::size_t before = 0;
};

using SessionFinished = SessionReboot;

TEST_F(SessionReboot, WithoutARequestNothingIsEverSent) {
  for (int i = 0; i < 3600; ++i) {
    fire();
    ASSERT_EQ(session->deadline(), now() + kSecond);
  }
  EXPECT_EQ(sentCount(), 0u);
  EXPECT_EQ(session->state(), State::kWaitingReboot);
  EXPECT_EQ(state().statusText, "Remove floppy from router and press reboot");
  EXPECT_EQ(trace.text(), "");
}

TEST_F(SessionReboot, RequestSendsTheCommandWhenTheTimerFires) {
  session->requestReboot();
  EXPECT_EQ(sentCount(), 0u);
  fire();
  ASSERT_EQ(sentCount(), 1u);
  EXPECT_EQ(lastSent().payloadText(), "TERM\nInstallation successful\n");
  EXPECT_TRUE(lastSent().header().isAck);
  EXPECT_EQ(lastSent().header().channel, 0);
  EXPECT_EQ(state().statusText, "Sending reboot command...");
  EXPECT_EQ(state().status, RouterStatus::kWaitingReboot);
  EXPECT_EQ(trace.text(), "rebooting\nsending: TERM\nInstallation successful\n\n");
  EXPECT_EQ(session->deadline(), now() + kSecond);
}

TEST_F(SessionReboot, AcknowledgedCommandFinishes) {
  session->requestReboot();
  fire();
  trace.clear();
  acknowledges();
  expectFinished("Installation finished successfully");
  EXPECT_EQ(trace.text(), "command success\n");
}

TEST_F(SessionReboot, CommandIsRepeatedUnderTheSameNumber) {
  session->requestReboot();
  fire();
  fire();
  EXPECT_EQ(sentCount(), 2u);
  EXPECT_EQ(link.network->sent[before].bytes, link.network->sent[before + 1].bytes);
}

TEST_F(SessionReboot, ThirtyUnansweredCommandsEndTheSession) {
  for (int i = 0; i < 100; ++i) fire();
  session->requestReboot();
  for (int i = 0; i < 29; ++i) fire();
  EXPECT_EQ(session->state(), State::kWaitingReboot);
  trace.clear();
  fire();
  EXPECT_EQ(sentCount(), 30u);
  expectFinished("No response, router must have been already rebooted");
  EXPECT_TRUE(trace.text().ends_with("\ncommand failure\n")) << trace.text();
  EXPECT_EQ(session->deadline(), now() + kSecond);
}

TEST_F(SessionReboot, OtherAcknowledgementIsIgnored) {
  session->requestReboot();
  fire();
  trace.clear();
  hear(makeFrame(kTargetMac, kInstallerMac, 4, 3));
  EXPECT_EQ(session->state(), State::kWaitingReboot);
  EXPECT_EQ(trace.text(), "");
}

TEST_F(SessionReboot, KeyPressedOnTheTargetFinishes) {
  const Micros timer = session->deadline();
  says("TERM\n");
  expectFinished("Installation finished successfully");
  EXPECT_EQ(trace.text(), "user pressed a key on router\n");
  EXPECT_EQ(sentCount(), 1u);
  expectPureAcknowledgement(lastSent(), 4);
  EXPECT_EQ(session->deadline(), timer);
}

TEST_F(SessionReboot, KeyPressedWhileTheCommandIsOnItsWayFinishesToo) {
  session->requestReboot();
  fire();
  hear(makeFrame(kTargetMac, kInstallerMac, 4, 4, "TERM\n"));
  expectFinished("Installation finished successfully");
}

TEST_F(SessionReboot, OtherTextIsIgnored) {
  says("HELO\n");
  EXPECT_EQ(session->state(), State::kWaitingReboot);
  EXPECT_EQ(sentCount(), 0u);
  EXPECT_EQ(trace.text(), "");
}

TEST_F(SessionReboot, SendFailureFails) {
  session->requestReboot();
  link.network->failing = "sendTo";
  fire();
  expectFailed("could not reboot router");
  EXPECT_TRUE(trace.contains("\nEXC while rebooting: sendto() failed: "));
  EXPECT_TRUE(trace.text().ends_with("\nfail: could not reboot router\n"));
}

TEST_F(SessionFinished, TracesEachTimerAndEachFrame) {
  says("TERM\n");
  trace.clear();
  fire();
  EXPECT_EQ(trace.text(), "finished\n");
  EXPECT_EQ(session->deadline(), now() + kSecond);
  link.clock.advance(kMillisecond);
  acknowledges();
  EXPECT_EQ(trace.text(), "finished\nfinished\n");
  EXPECT_EQ(session->deadline(), now() + kSecond);
}

TEST_F(SessionFinished, RebootIsNoLongerSent) {
  says("TERM\n");
  const std::size_t count = link.sentCount();
  session->requestReboot();
  for (int i = 0; i < 3; ++i) fire();
  EXPECT_EQ(link.sentCount(), count);
  expectFinished("Installation finished successfully");
}

}  // namespace
}  // namespace omniset::test
