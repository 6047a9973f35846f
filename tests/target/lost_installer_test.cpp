// An installer that falls silent.
#include "target_fixture.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Micros kGone = 30 * kSecond;
constexpr const char* kGoneSentence = "The installer is gone. Announcing again.";

struct TargetOfALostInstaller : TargetFixture, ::testing::WithParamInterface<State> {
  void reachWithSlowDisk() {
    reach(GetParam());
    store.prepared = GetParam() != State::kPreparing;
  }
  bool announced() {
    const auto texts = takeSentTexts();
    return std::any_of(texts.begin(), texts.end(),
                       [](const std::string& text) { return text.starts_with("DSCV"); });
  }
};

TEST_P(TargetOfALostInstaller, AnnouncesItselfAnewAfterThirtySeconds) {
  reachWithSlowDisk();
  pass(kGone - 2 * kSecond);
  EXPECT_FALSE(announced());
  EXPECT_EQ(session.state(), GetParam());
  pass(3 * kSecond);
  EXPECT_EQ(session.state(), State::kAnnouncing);
  EXPECT_THAT(console.sentences, ElementsAre(kGoneSentence));
  EXPECT_THAT(store.calls, ElementsAre("abandon"));
  takeSent();
  pass(kSecond);
  expectAnnouncedAnew();
}

TEST_P(TargetOfALostInstaller, AnythingFromTheInstallerStartsTheThirtySecondsAnew) {
  reachWithSlowDisk();
  for (int i = 0; i < 3; ++i) {
    pass(kGone - 2 * kSecond);
    receive(acknowledgementOf(1));
    EXPECT_EQ(session.state(), GetParam());
  }
}

TEST_P(TargetOfALostInstaller, AStrangersFramesAreNoSignOfLife) {
  reachWithSlowDisk();
  for (int second = 0; second < 31; ++second) {
    receive(makeFrame(kStrangerMac, kTargetMac, 2, 2));
    receive(makeFrame(kInstallerMac, kStrangerMac, 2, 2));
    pass(kSecond);
  }
  EXPECT_EQ(session.state(), State::kAnnouncing);
}

TEST_P(TargetOfALostInstaller, TakesANewOfferOfAnybodyAfterwards) {
  reachWithSlowDisk();
  pass(kGone + kSecond);
  takeSent();
  receive(makeFrame(kStrangerMac, kTargetMac, 1, 1, "OFFR\n"));
  EXPECT_EQ(session.state(), State::kAccepting);
  pass(0);
  const auto sent = takeSent();
  ASSERT_EQ(sent.size(), 1u);
  EXPECT_EQ(sent[0].payloadText(), "YACK\n");
  EXPECT_EQ(sent[0].header().destination, kStrangerMac);
  EXPECT_EQ(sent[0].header().sequence, 2);
  EXPECT_EQ(sent[0].header().acknowledgement, 1);
}

INSTANTIATE_TEST_SUITE_P(While, TargetOfALostInstaller,
                         ::testing::Values(State::kAccepting, State::kPreparing, State::kStarting,
                                           State::kAwaitingFile, State::kReceiving),
                         stateName);

struct TargetOfAnIdleInstaller : TargetFixture, ::testing::WithParamInterface<State> {
  // The installer sends frames that bring nothing on.
  void passWithIdleFrames(Micros time) {
    for (const Micros end = link.clock.now() + time; link.clock.now() < end;) {
      receive(acknowledgementOf(1));
      receive(offer());
      pass(kSecond);
    }
    takeSent();
  }
};

TEST_P(TargetOfAnIdleInstaller, AnnouncesItselfAnewAfterTwoMinutesWithoutProgress) {
  reach(GetParam());
  passWithIdleFrames(118 * kSecond);
  EXPECT_EQ(session.state(), GetParam());
  pass(3 * kSecond);
  EXPECT_EQ(session.state(), State::kAnnouncing);
  EXPECT_THAT(console.sentences, ElementsAre(kGoneSentence));
}

INSTANTIATE_TEST_SUITE_P(While, TargetOfAnIdleInstaller,
                         ::testing::Values(State::kStarting, State::kAwaitingFile,
                                           State::kReceiving),
                         stateName);

using SlowInstallation = TargetFixture;

TEST_F(SlowInstallation, MayTakeHalfAnHourToPrepareTheDisk) {
  reach(State::kPreparing);
  for (int second = 0; second < 1800; ++second) {
    receive(acknowledgementOf(2));
    pass(kSecond);
  }
  EXPECT_EQ(session.state(), State::kPreparing);
}

TEST_F(SlowInstallation, EachChunkIsProgress) {
  reach(State::kReceiving);
  for (int sequence = 3; sequence < 10; ++sequence) {
    for (int i = 0; i < 4; ++i) {
      pass(25 * kSecond);
      receive(acknowledgementOf(3));
    }
    receive(fileData(sequence, "x"));
    EXPECT_EQ(session.state(), State::kReceiving);
  }
}

using InstalledTarget = TargetFixture;

TEST_F(InstalledTarget, WaitsForTheInstallerWithoutEnd) {
  reach(State::kInstalled);
  pass(24 * 3600 * kSecond);
  EXPECT_EQ(session.state(), State::kInstalled);
  EXPECT_THAT(takeSent(), IsEmpty());
  EXPECT_THAT(console.sentences, IsEmpty());
}

}  // namespace
}  // namespace omniset::test
