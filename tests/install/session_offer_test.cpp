#include "tests/install/session_fixture.h"

namespace omniset::test {
namespace {

using SessionOffer = SessionFixture;

TEST_F(SessionOffer, IsAControlMessageToTheTarget) {
  start();
  fire();
  ASSERT_EQ(link.sentCount(), 1u);
  EXPECT_EQ(link.network->sent[0].bytes.size(), 25u);
  const LinkFrame frame = lastSent();
  EXPECT_EQ(frame.payloadText(), "OFFR\n");
  const FrameHeader header = frame.header();
  EXPECT_EQ(header.source, kInstallerMac);
  EXPECT_EQ(header.destination, kTargetMac);
  EXPECT_TRUE(header.isAck);
  EXPECT_EQ(header.channel, 0);
  EXPECT_EQ(header.sequence, 1);
  EXPECT_EQ(header.acknowledgement, 1);
  EXPECT_EQ(trace.text(), "sending: OFFR\n\n");
}

TEST_F(SessionOffer, AsksToKeepTheConfiguration) {
  record.keepConfiguration = true;
  start();
  fire();
  EXPECT_EQ(lastSent().payloadText(), "OFFR\nkeep\n");
  EXPECT_EQ(trace.text(), "sending: OFFR\nkeep\n\n");
}

TEST_F(SessionOffer, IsRepeatedUnchangedASecondLater) {
  start();
  fire();
  EXPECT_EQ(session->deadline(), now() + kSecond);
  fire();
  ASSERT_EQ(link.sentCount(), 2u);
  EXPECT_EQ(link.network->sent[0].bytes, link.network->sent[1].bytes);
  EXPECT_EQ(state().statusText, "Sending offer...");
}

TEST_F(SessionOffer, UnansweredForAMinuteFails) {
  start();
  const Micros began = now();
  for (int i = 0; i < 60; ++i) fire();
  EXPECT_EQ(link.sentCount(), 60u);
  EXPECT_EQ(state().status, RouterStatus::kInstalling);
  trace.clear();
  fire();
  EXPECT_EQ(now(), began + 60 * kSecond);
  EXPECT_EQ(link.sentCount(), 60u);
  expectFailed("No response from router, timeout");
  EXPECT_EQ(trace.text(), "fail: No response from router, timeout\n");
}

TEST_F(SessionOffer, AnswerInTheLastSecondStillCounts) {
  start();
  for (int i = 0; i < 60; ++i) fire();
  link.clock.advance(kSecond - 1);
  says("YACK\n");
  EXPECT_EQ(session->state(), State::kPreparing);
}

TEST_F(SessionOffer, AnswerAfter61SecondsFindsTheSessionFailed) {
  start();
  for (int i = 0; i < 61; ++i) fire();
  link.clock.advance(kSecond);
  trace.clear();
  says("YACK\n");
  EXPECT_EQ(state().statusText, "Installation failed: No response from router, timeout");
  EXPECT_EQ(trace.text(), "finished\n");
}

TEST_F(SessionOffer, AcceptanceStartsThePreparationAtOnce) {
  start();
  fire();
  trace.clear();
  says("YACK\n");
  EXPECT_EQ(session->state(), State::kPreparing);
  EXPECT_EQ(session->deadline(), 0);
  EXPECT_EQ(state().status, RouterStatus::kInstalling);
  EXPECT_EQ(state().statusText, "Partitioning and formating harddrive...");
  EXPECT_EQ(trace.text(), "prepare ok\n");
  EXPECT_EQ(link.sentCount(), 1u);
}

TEST_F(SessionOffer, AcceptanceMayGoOn) {
  start();
  fire();
  says("YACK and more");
  EXPECT_EQ(session->state(), State::kPreparing);
}

TEST_F(SessionOffer, OtherAnswerFails) {
  start();
  fire();
  trace.clear();
  says("NOPE\n");
  expectFailed("bad router response");
  EXPECT_EQ(trace.text(), "fail: bad router response\n");
}

TEST_F(SessionOffer, AnswerWithoutTextFails) {
  start();
  fire();
  acknowledges();
  expectFailed("bad router response");
}

TEST_F(SessionOffer, CutAcceptanceFails) {
  start();
  fire();
  says("YAC");
  expectFailed("bad router response");
}

TEST_F(SessionOffer, SendFailureFailsOnlyTheSession) {
  start();
  link.network->failing = "sendTo";
  trace.clear();
  fire();
  expectFailed("could not connect to router");
  EXPECT_TRUE(trace.text().starts_with("sending: OFFR\n\nEXC while preparing: sendto() failed: "))
      << trace.text();
  EXPECT_TRUE(trace.text().ends_with("\nfail: could not connect to router\n")) << trace.text();
}

}  // namespace
}  // namespace omniset::test
