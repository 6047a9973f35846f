// The reboot, by a key or by the installer.
#include "target_fixture.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct TargetEnding : TargetFixture {
  void pressKey() { session.keyPressed(link.clock.now()); }
};

TEST_F(TargetEnding, AKeySendsTermAtOnceAndEachSecond) {
  reach(State::kInstalled);
  pressKey();
  EXPECT_EQ(session.state(), State::kTerminating);
  pass(0);
  const auto sent = takeSent();
  ASSERT_EQ(sent.size(), 1u);
  EXPECT_EQ(sent[0].payloadText(), "TERM\n");
  EXPECT_EQ(sent[0].header().sequence, 4);
  EXPECT_EQ(sent[0].header().acknowledgement, 2);
  EXPECT_TRUE(sent[0].header().isAck);
  pass(2 * kSecond);
  EXPECT_THAT(takeSentTexts(), ElementsAre("TERM\n", "TERM\n"));
}

TEST_F(TargetEnding, TheAcknowledgementOfTermEnds) {
  reach(State::kTerminating);
  receive(acknowledgementOf(4));
  EXPECT_EQ(session.state(), State::kEnded);
  EXPECT_THAT(console.sentences, ElementsAre("Rebooting."));
  pass(10 * kSecond);
  EXPECT_THAT(takeSent(), IsEmpty());
}

TEST_F(TargetEnding, OlderAcknowledgementsDoNotEnd) {
  reach(State::kTerminating);
  receive(acknowledgementOf(3));
  receive(makeFrame(kInstallerMac, kTargetMac, 2, kNoAck));
  EXPECT_EQ(session.state(), State::kTerminating);
}

TEST_F(TargetEnding, EndsAfterFiveTermsWithoutAnAnswer) {
  reach(State::kInstalled);
  pressKey();
  pass(4 * kSecond);
  EXPECT_EQ(takeSent().size(), 5u);
  EXPECT_EQ(session.state(), State::kTerminating);
  pass(kSecond);
  EXPECT_THAT(takeSent(), IsEmpty());
  EXPECT_EQ(session.state(), State::kEnded);
  EXPECT_THAT(console.sentences, ElementsAre("Rebooting without the installer's word."));
}

TEST_F(TargetEnding, ASecondKeyDoesNotBeginAnew) {
  reach(State::kInstalled);
  pressKey();
  pass(3 * kSecond);
  pressKey();
  pass(2 * kSecond);
  EXPECT_EQ(session.state(), State::kEnded);
  EXPECT_EQ(takeSent().size(), 5u);
}

TEST_F(TargetEnding, KeysAreIgnoredBeforeEverythingIsInstalled) {
  const auto pressInEachStep = [this](State expected) {
    pressKey();
    EXPECT_EQ(session.state(), expected);
  };
  pressInEachStep(State::kAnnouncing);
  receive(offer());
  pressInEachStep(State::kAccepting);
  receive(acknowledgementOf(2));
  pressInEachStep(State::kPreparing);
  pass(kSecond);
  pressInEachStep(State::kStarting);
  receive(acknowledgementOf(3));
  pressInEachStep(State::kAwaitingFile);
  receive(fileHeader(2, "autorun.scr", 1));
  pressInEachStep(State::kReceiving);
  receive(fileData(3, "x"));
  EXPECT_EQ(session.state(), State::kInstalled);
  pass(60 * kSecond);
  EXPECT_EQ(session.state(), State::kInstalled);
}

TEST_F(TargetEnding, StillAcknowledgesTheScriptAfterAKey) {
  reach(State::kTerminating);
  receive(fileHeader(2, "autorun.scr", 0));
  expectAcknowledged(2);
  EXPECT_EQ(session.state(), State::kTerminating);
}

TEST_F(TargetEnding, AcknowledgesTheInstallersTerm) {
  reach(State::kInstalled);
  receive(rebootCommand(3));
  expectAcknowledged(3);
  EXPECT_EQ(session.state(), State::kEnding);
  EXPECT_THAT(console.sentences, ElementsAre("Rebooting."));
}

TEST_F(TargetEnding, TakesTheInstallersTermAfterAKey) {
  reach(State::kTerminating);
  receive(rebootCommand(3));
  expectAcknowledged(3);
  EXPECT_EQ(session.state(), State::kEnding);
}

TEST_F(TargetEnding, AcknowledgesRepetitionsForThreeSecondsThenEnds) {
  reach(State::kInstalled);
  receive(rebootCommand(3));
  takeSent();
  for (int i = 0; i < 2; ++i) {
    pass(kSecond);
    receive(rebootCommand(3));
    expectAcknowledged(3);
    EXPECT_EQ(session.state(), State::kEnding);
  }
  pass(kSecond);
  EXPECT_EQ(session.state(), State::kEnded);
  receive(rebootCommand(3));
  EXPECT_THAT(takeSent(), IsEmpty());
}

TEST_F(TargetEnding, NothingButARepetitionCountsWhileItLingers) {
  reach(State::kEnding);
  receive(fileHeader(4, "more.bdl", 10));
  receive(makeFrame(kInstallerMac, kTargetMac, 4, 3, "no such word"));
  receive(acknowledgementOf(3));
  EXPECT_EQ(session.state(), State::kEnding);
  EXPECT_THAT(store.calls, IsEmpty());
  EXPECT_THAT(takeSent(), IsEmpty());
}

TEST_F(TargetEnding, AnEndedTargetIsSilent) {
  reach(State::kEnded);
  receive(offer());
  receive(rebootCommand(3));
  pressKey();
  pass(3600 * kSecond);
  EXPECT_EQ(session.state(), State::kEnded);
  EXPECT_THAT(takeSent(), IsEmpty());
}

}  // namespace
}  // namespace omniset::test
