// From the offer to the first file.
#include "target_fixture.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using TargetAccepting = TargetFixture;
using TargetPreparing = TargetFixture;
using TargetStarting = TargetFixture;

TEST_F(TargetAccepting, RepeatsYackEachSecondWithTheSameNumber) {
  reach(State::kAccepting);
  pass(5 * kSecond);
  const auto sent = takeSent();
  ASSERT_EQ(sent.size(), 5u);
  for (const LinkFrame& frame : sent) {
    EXPECT_EQ(frame.payloadText(), "YACK\n");
    EXPECT_EQ(frame.header().sequence, 2);
  }
}

TEST_F(TargetAccepting, AnswersARepeatedOfferWithYackAtOnce) {
  reach(State::kAccepting);
  receive(offer());
  EXPECT_THAT(takeSentTexts(), ElementsAre("YACK\n"));
  EXPECT_EQ(session.deadline(), link.clock.now() + kSecond);
  EXPECT_EQ(session.state(), State::kAccepting);
}

TEST_F(TargetAccepting, ARepeatedOfferCountsWithWhatItAsksFor) {
  reach(State::kAccepting);
  receive(offer("OFFR\nkeep\n"));
  receive(acknowledgementOf(2));
  EXPECT_THAT(store.calls, ElementsAre("prepare, keep"));
}

TEST_F(TargetAccepting, BeginsThePreparationOnTheAcknowledgement) {
  reach(State::kAccepting);
  EXPECT_THAT(store.calls, IsEmpty());
  receive(acknowledgementOf(2));
  EXPECT_EQ(session.state(), State::kPreparing);
  EXPECT_THAT(store.calls, ElementsAre("prepare"));
  EXPECT_THAT(console.sentences, ElementsAre("Preparing the disk..."));
}

TEST_F(TargetAccepting, IsNotAcknowledgedByAnOlderNumberOrWithoutTheAckFlag) {
  reach(State::kAccepting);
  receive(acknowledgementOf(1));
  receive(acknowledgementOf(3));
  LinkFrame unflagged = acknowledgementOf(2);
  FrameHeader header = unflagged.header();
  header.isAck = false;
  unflagged.setHeader(header);
  receive(unflagged);
  EXPECT_EQ(session.state(), State::kAccepting);
  EXPECT_THAT(store.calls, IsEmpty());
  EXPECT_THAT(takeSent(), IsEmpty());
}

TEST_F(TargetPreparing, PollsTheStoreUntilItIsReady) {
  reach(State::kPreparing);
  const int before = store.polls;
  pass(10 * kSecond);
  EXPECT_EQ(store.polls - before, 100);
  EXPECT_EQ(session.state(), State::kPreparing);
  store.prepared = true;
  pass(100 * kMillisecond);
  EXPECT_EQ(session.state(), State::kStarting);
  EXPECT_THAT(console.sentences, ElementsAre("The disk is ready."));
}

TEST_F(TargetPreparing, AnswersNeitherKeepAlivesNorLateOffers) {
  reach(State::kPreparing);
  for (int second = 0; second < 60; ++second) {
    receive(acknowledgementOf(2));
    receive(offer());
    pass(kSecond);
  }
  EXPECT_THAT(takeSent(), IsEmpty());
  EXPECT_EQ(session.state(), State::kPreparing);
  EXPECT_THAT(store.calls, IsEmpty());
}

TEST_F(TargetPreparing, IgnoresKeys) {
  reach(State::kPreparing);
  session.keyPressed(link.clock.now());
  EXPECT_EQ(session.state(), State::kPreparing);
}

TEST_F(TargetStarting, RepeatsStrtEachSecondWithTheNumberAfterYack) {
  reach(State::kPreparing);
  store.prepared = true;
  pass(100 * kMillisecond);
  pass(5 * kSecond);
  const auto sent = takeSent();
  ASSERT_EQ(sent.size(), 6u);
  for (const LinkFrame& frame : sent) {
    const FrameHeader header = frame.header();
    EXPECT_EQ(frame.payloadText(), "STRT\n");
    EXPECT_EQ(header.sequence, 3);
    EXPECT_EQ(header.acknowledgement, 1);
    EXPECT_TRUE(header.isAck);
  }
}

TEST_F(TargetStarting, EndsWithAPureAcknowledgement) {
  reach(State::kStarting);
  receive(acknowledgementOf(3));
  EXPECT_EQ(session.state(), State::kAwaitingFile);
  pass(5 * kSecond);
  EXPECT_THAT(takeSent(), IsEmpty());
}

TEST_F(TargetStarting, KeepAlivesOfThePreparationDoNotAcknowledgeIt) {
  reach(State::kStarting);
  receive(acknowledgementOf(2));
  EXPECT_EQ(session.state(), State::kStarting);
  EXPECT_THAT(takeSent(), IsEmpty());
}

TEST_F(TargetStarting, EndsWithAFileHeader) {
  reach(State::kStarting);
  receive(fileHeader(2, "system.bdl", 10));
  EXPECT_EQ(session.state(), State::kReceiving);
  EXPECT_THAT(store.calls, ElementsAre("open system.bdl 10"));
  const auto sent = takeSent();
  ASSERT_EQ(sent.size(), 1u);
  EXPECT_EQ(sent[0].header().acknowledgement, 2);
  EXPECT_EQ(sent[0].header().sequence, 4);
}

// The installer still prepares until it has "STRT", and would give up.
TEST_F(TargetStarting, ALateOfferDrawsNoPureAcknowledgement) {
  reach(State::kStarting);
  receive(offer());
  EXPECT_THAT(takeSent(), IsEmpty());
  EXPECT_EQ(session.state(), State::kStarting);
}

TEST_F(TargetStarting, NothingWithoutAPayloadIsSentBeforeStrtIsAcknowledged) {
  pass(2 * kSecond);
  for (int i = 0; i < 3; ++i) receive(offer());
  pass(3 * kSecond);
  store.prepared = false;
  receive(acknowledgementOf(2));
  for (int i = 0; i < 3; ++i) receive(offer());
  pass(3 * kSecond);
  store.prepared = true;
  pass(3 * kSecond);
  for (int i = 0; i < 3; ++i) receive(offer());
  receive(acknowledgementOf(2));
  pass(3 * kSecond);
  EXPECT_EQ(session.state(), State::kStarting);
  for (const LinkFrame& frame : takeSent()) EXPECT_GT(frame.header().payloadLength, 0);
}

}  // namespace
}  // namespace omniset::test
