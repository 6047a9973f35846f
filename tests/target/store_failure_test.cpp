// Stores that fail, and installers that break the rules.
#include "target_fixture.h"

namespace omniset::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

struct TargetFailing : TargetFixture {
  // It has told the reason, dropped the file, and rests.
  void expectFailed(const std::string& reason) {
    EXPECT_EQ(session.state(), State::kFailed);
    EXPECT_THAT(store.calls, Contains("abandon"));
    ASSERT_FALSE(console.sentences.empty());
    EXPECT_THAT(console.sentences.back(), StartsWith("Installation failed: " + reason));
    EXPECT_THAT(takeSent(), IsEmpty());
  }
  void expectRestsThenAnnouncesAnew() {
    console.sentences.clear();
    pass(10 * kSecond - 1);
    EXPECT_THAT(takeSent(), IsEmpty());
    pass(1);
    expectAnnouncedAnew();
    EXPECT_THAT(console.sentences, ElementsAre("Announcing again."));
  }
};

TEST_F(TargetFailing, APreparationThatCannotBegin) {
  reach(State::kAccepting);
  store.failing = "prepare";
  receive(acknowledgementOf(2));
  expectFailed("Cannot prepare");
  expectRestsThenAnnouncesAnew();
}

TEST_F(TargetFailing, APreparationThatGoesWrong) {
  reach(State::kPreparing);
  store.failing = "isPrepared";
  pass(100 * kMillisecond);
  expectFailed("Cannot isPrepared");
  expectRestsThenAnnouncesAnew();
}

TEST_F(TargetFailing, AFileThatCannotBeOpenedIsNotAcknowledged) {
  reach(State::kAwaitingFile);
  store.failing = "open";
  receive(fileHeader(2, "system.bdl", 2000));
  expectFailed("Cannot open");
  expectRestsThenAnnouncesAnew();
}

TEST_F(TargetFailing, AFirstFileThatCannotBeOpenedInPlaceOfTheStartsAcknowledgement) {
  reach(State::kStarting);
  store.failing = "open";
  receive(fileHeader(2, "system.bdl", 2000));
  expectFailed("Cannot open");
  expectRestsThenAnnouncesAnew();
}

TEST_F(TargetFailing, AChunkThatCannotBeWrittenIsNotAcknowledged) {
  reach(State::kReceiving);
  store.failing = "write";
  receive(fileData(3, "abc"));
  expectFailed("Cannot write");
  expectRestsThenAnnouncesAnew();
}

TEST_F(TargetFailing, AFileThatCannotBeClosedIsNotAcknowledged) {
  reach(State::kAwaitingFile);
  receive(fileHeader(2, "autorun.scr", 3));
  takeSent();
  store.failing = "close";
  receive(fileData(3, "abc"));
  expectFailed("Cannot close");
  expectRestsThenAnnouncesAnew();
}

TEST_F(TargetFailing, AnInstallationThatCannotBeFinishedIsNotAcknowledged) {
  reach(State::kAwaitingFile);
  store.failing = "finish";
  receive(fileHeader(2, "autorun.scr", 0));
  expectFailed("Cannot finish");
  expectRestsThenAnnouncesAnew();
}

TEST_F(TargetFailing, AFileThatCannotBeDroppedDoesNotHideTheReason) {
  reach(State::kReceiving);
  store.failing = "abandon";
  receive(fileData(3, std::string(2001, 'x')));
  EXPECT_EQ(session.state(), State::kFailed);
  ASSERT_EQ(console.sentences.size(), 2u);
  EXPECT_EQ(console.sentences[0], "Cannot abandon");
  EXPECT_THAT(console.sentences[1], StartsWith("Installation failed: file read: bad size"));
  store.failing.clear();
  expectRestsThenAnnouncesAnew();
}

TEST_F(TargetFailing, AnswersNobodyWhileItRests) {
  reach(State::kFailed);
  receive(offer());
  receive(fileHeader(2, "system.bdl", -1));
  receive(rebootCommand(3));
  session.keyPressed(link.clock.now());
  EXPECT_EQ(session.state(), State::kFailed);
  EXPECT_THAT(takeSent(), IsEmpty());
}

TEST_F(TargetFailing, CanBeInstalledAfterwards) {
  reach(State::kFailed);
  pass(10 * kSecond);
  receive(offer());
  receive(acknowledgementOf(2));
  pass(kSecond);
  receive(fileHeader(2, "autorun.scr", 1));
  receive(fileData(3, "x"));
  EXPECT_EQ(session.state(), State::kInstalled);
  EXPECT_EQ(store.content, "x");
}

TEST_F(TargetFailing, DataOnTheControlChannel) {
  reach(State::kReceiving);
  receive(makeFrame(kInstallerMac, kTargetMac, 3, kNoAck, "abc", kControlChannel));
  expectFailed("file read: bad channel");
  EXPECT_EQ(store.content, "");
}

TEST_F(TargetFailing, AHeaderOnTheDataChannel) {
  reach(State::kAwaitingFile);
  receive(fileData(2, "FILE\nsystem.bdl\n5\n"));
  expectFailed("file open: bad channel");
}

TEST_F(TargetFailing, AnotherWordInPlaceOfAHeader) {
  reach(State::kAwaitingFile);
  receive(makeFrame(kInstallerMac, kTargetMac, 2, kNoAck, "FOLDER\nx\n"));
  expectFailed("file open: bad channel");
}

TEST_F(TargetFailing, AHeaderWithoutName) {
  reach(State::kAwaitingFile);
  receive(makeFrame(kInstallerMac, kTargetMac, 2, kNoAck, "FILE\n\n5\n"));
  expectFailed("file read: bad format, no name");
}

TEST_F(TargetFailing, AHeaderWithoutSize) {
  reach(State::kAwaitingFile);
  receive(makeFrame(kInstallerMac, kTargetMac, 2, kNoAck, "FILE\nx\n"));
  expectFailed("file read: bad format, no size");
}

TEST_F(TargetFailing, AHeaderWithANegativeSize) {
  reach(State::kAwaitingFile);
  receive(fileHeader(2, "x", -1));
  expectFailed("file read: bad size");
  EXPECT_THAT(store.calls, ElementsAre("abandon"));
}

TEST_F(TargetFailing, MoreDataThanAnnounced) {
  reach(State::kAwaitingFile);
  receive(fileHeader(2, "x", 3));
  takeSent();
  receive(fileData(3, "abcd"));
  expectFailed("file read: bad size");
  EXPECT_EQ(store.content, "");
}

TEST_F(TargetFailing, AnAcknowledgementThatCannotBeSent) {
  reach(State::kReceiving);
  link.network->failing = "sendTo";
  receive(fileData(3, "abc"));
  link.network->failing.clear();
  expectFailed("sendto() failed");
  expectRestsThenAnnouncesAnew();
}

}  // namespace
}  // namespace omniset::test
