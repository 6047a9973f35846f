#include "tests/install/session_fixture.h"

namespace omniset::test {
namespace {

using SessionPreparing = SessionFixture;

TEST_F(SessionPreparing, IsKeptAliveWithPureAcknowledgementsEachSecond) {
  startTo(State::kPreparing);
  const Micros began = now();
  fire();
  EXPECT_EQ(now(), began);
  expectPureAcknowledgement(lastSent(), 2);
  EXPECT_EQ(lastSent().header().sequence, 2);
  EXPECT_EQ(session->deadline(), now() + kSecond);
  fire();
  EXPECT_EQ(link.network->sent[1].bytes, link.network->sent[2].bytes);
  EXPECT_EQ(trace.text(), "");
}

TEST_F(SessionPreparing, Takes30MinutesAtMost) {
  startTo(State::kPreparing);
  const Micros began = now();
  for (int i = 0; i < 1800; ++i) fire();
  EXPECT_EQ(link.sentCount(), 1u + 1800u);
  EXPECT_EQ(session->state(), State::kPreparing);
  fire();
  EXPECT_EQ(now(), began + 1800 * kSecond);
  EXPECT_EQ(link.sentCount(), 1u + 1800u);
  expectFailed("No response from router, timeout");
  EXPECT_EQ(trace.text(), "fail: No response from router, timeout\n");
}

TEST_F(SessionPreparing, StartIsAcknowledgedAndBeginsTheTransfer) {
  startTo(State::kPreparing);
  fire();
  const Micros timer = session->deadline();
  says("STRT\n");
  EXPECT_EQ(session->state(), State::kTransferring);
  EXPECT_EQ(state().statusText, "Installing router...");
  EXPECT_EQ(state().status, RouterStatus::kInstalling);
  expectPureAcknowledgement(lastSent(), 3);
  EXPECT_EQ(trace.text(), "format ok\n");
  EXPECT_EQ(session->deadline(), timer);
}

TEST_F(SessionPreparing, OtherTextFails) {
  startTo(State::kPreparing);
  says("TERM\n");
  expectFailed("bad router response");
  EXPECT_EQ(trace.text(), "fail: bad router response\n");
}

TEST_F(SessionPreparing, FrameWithoutTextFails) {
  startTo(State::kPreparing);
  acknowledges();
  expectFailed("bad router response");
}

TEST_F(SessionPreparing, RepeatedAcceptanceIsOnlyABadPacket) {
  startTo(State::kPreparing);
  hear(makeFrame(kTargetMac, kInstallerMac, 2, 1, "YACK\n"));
  EXPECT_EQ(session->state(), State::kPreparing);
  const std::string dump =
      "Src: 02:00:00:01:02:03\tDst: 02:00:00:00:00:01\n"
      "Is ack: 1\tChannel: 0\tPayload: 5\n"
      "SeqNum: 2\tAckNum: 1\n";
  EXPECT_EQ(trace.text(), "* recv bad seq\n" + dump + "conn seqNum: 2, ackNum: 2\n" +
                              "bad packet received: " + dump + "Data: YACK\n\n");
}

TEST_F(SessionPreparing, SendFailureFailsOnlyTheSession) {
  startTo(State::kPreparing);
  link.network->failing = "sendTo";
  fire();
  expectFailed("could not prepare hard drive");
  EXPECT_TRUE(trace.text().starts_with("EXC while formating: sendto() failed: ")) << trace.text();
  EXPECT_TRUE(trace.text().ends_with("\nfail: could not prepare hard drive\n")) << trace.text();
}

}  // namespace
}  // namespace omniset::test
