// Files.
#include "target_fixture.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct TargetReceiving : TargetFixture {
  // The number of frames sent at each call of the store.
  void watchStore() {
    store.onCall = [this] { sentAtCalls.push_back(link.sentCount()); };
  }
  std::vector<std::size_t> sentAtCalls;
};

TEST_F(TargetReceiving, OpensTheFileBeforeItAcknowledgesTheHeader) {
  reach(State::kAwaitingFile);
  watchStore();
  receive(fileHeader(2, "system.bdl", 2000));
  EXPECT_THAT(store.calls, ElementsAre("open system.bdl 2000"));
  EXPECT_THAT(sentAtCalls, ElementsAre(0u));
  expectAcknowledged(2);
  EXPECT_EQ(session.state(), State::kReceiving);
  EXPECT_THAT(console.sentences, ElementsAre("Receiving system.bdl, 2000 bytes."));
}

TEST_F(TargetReceiving, WritesAChunkBeforeItAcknowledgesIt) {
  reach(State::kReceiving);
  watchStore();
  receive(fileData(3, std::string(1452, 'a')));
  EXPECT_THAT(store.calls, ElementsAre("write 1452"));
  EXPECT_THAT(sentAtCalls, ElementsAre(0u));
  expectAcknowledged(3);
}

TEST_F(TargetReceiving, ClosesTheFileBeforeItAcknowledgesTheLastChunk) {
  reach(State::kReceiving);
  receive(fileData(3, std::string(1452, 'a')));
  takeSent();
  store.calls.clear();
  watchStore();
  receive(fileData(4, std::string(548, 'b')));
  EXPECT_THAT(store.calls, ElementsAre("write 548", "close"));
  EXPECT_THAT(sentAtCalls, ElementsAre(0u, 0u));
  expectAcknowledged(4);
  EXPECT_EQ(session.state(), State::kAwaitingFile);
  EXPECT_EQ(store.content, std::string(1452, 'a') + std::string(548, 'b'));
}

TEST_F(TargetReceiving, AcknowledgesARepeatedHeaderWithoutOpeningTwice) {
  reach(State::kReceiving);
  receive(fileHeader(2, "system.bdl", 2000));
  expectAcknowledged(2);
  EXPECT_THAT(store.calls, IsEmpty());
}

TEST_F(TargetReceiving, AcknowledgesARepeatedChunkWithoutWritingTwice) {
  reach(State::kReceiving);
  receive(fileData(3, "abc"));
  takeSent();
  for (int i = 0; i < 3; ++i) {
    receive(fileData(3, "abc"));
    expectAcknowledged(3);
  }
  EXPECT_EQ(store.content, "abc");
}

TEST_F(TargetReceiving, AcknowledgesTheRepeatedLastChunkWhileItAwaitsTheNextFile) {
  reach(State::kAwaitingFile);
  receive(fileHeader(2, "a.bdl", 3));
  receive(fileData(3, "abc"));
  takeSent();
  receive(fileData(3, "abc"));
  expectAcknowledged(3);
  EXPECT_EQ(session.state(), State::kAwaitingFile);
  EXPECT_EQ(store.content, "abc");
}

TEST_F(TargetReceiving, IgnoresAChunkThatCameTooEarlyOrLongAgo) {
  reach(State::kReceiving);
  receive(fileData(4, "early"));
  EXPECT_THAT(takeSent(), IsEmpty());
  receive(fileData(3, "abc"));
  takeSent();
  receive(fileHeader(2, "system.bdl", 2000));
  EXPECT_THAT(takeSent(), IsEmpty());
  EXPECT_EQ(store.content, "abc");
  EXPECT_EQ(session.state(), State::kReceiving);
}

TEST_F(TargetReceiving, AnEmptyFileIsCompleteAtOnce) {
  reach(State::kAwaitingFile);
  watchStore();
  receive(fileHeader(2, "empty.bdl", 0));
  EXPECT_THAT(store.calls, ElementsAre("open empty.bdl 0", "close"));
  EXPECT_THAT(sentAtCalls, ElementsAre(0u, 0u));
  expectAcknowledged(2);
  EXPECT_EQ(session.state(), State::kAwaitingFile);
}

TEST_F(TargetReceiving, ALateAcknowledgementOfStrtChangesNothing) {
  reach(State::kReceiving);
  receive(acknowledgementOf(3));
  receive(acknowledgementOf(2));
  EXPECT_EQ(session.state(), State::kReceiving);
  EXPECT_THAT(takeSent(), IsEmpty());
  receive(fileData(3, "abc"));
  expectAcknowledged(3);
}

TEST_F(TargetReceiving, ALateAcknowledgementOfStrtChangesNothingBetweenFiles) {
  reach(State::kAwaitingFile);
  receive(acknowledgementOf(3));
  EXPECT_EQ(session.state(), State::kAwaitingFile);
  EXPECT_THAT(takeSent(), IsEmpty());
}

TEST_F(TargetReceiving, TakesFileAfterFile) {
  reach(State::kAwaitingFile);
  receive(fileHeader(2, "a.bdl", 1));
  receive(fileData(3, "a"));
  receive(fileHeader(4, "b.bdl", 2));
  receive(fileData(5, "bb"));
  EXPECT_THAT(store.calls,
              ElementsAre("open a.bdl 1", "write 1", "close", "open b.bdl 2", "write 2", "close"));
  EXPECT_EQ(session.state(), State::kAwaitingFile);
}

TEST_F(TargetReceiving, TheScriptCompletesTheInstallation) {
  reach(State::kAwaitingFile);
  receive(fileHeader(2, "autorun.scr", 4));
  EXPECT_EQ(session.state(), State::kReceiving);
  receive(fileData(3, "/ip\n"));
  EXPECT_EQ(session.state(), State::kInstalled);
  EXPECT_EQ(console.sentences.back(), kInstalledSentence);
}

TEST_F(TargetReceiving, AnEmptyScriptCompletesTheInstallation) {
  reach(State::kAwaitingFile);
  receive(fileHeader(2, "autorun.scr", 0));
  EXPECT_EQ(session.state(), State::kInstalled);
  EXPECT_THAT(store.calls, ElementsAre("open autorun.scr 0", "close", "finish"));
  expectAcknowledged(2);
}

TEST_F(TargetReceiving, TheInstallationCountsBeforeTheScriptIsAcknowledged) {
  reach(State::kAwaitingFile);
  store.onCall = [&] { EXPECT_THAT(takeSent(), IsEmpty()); };
  receive(fileHeader(2, "autorun.scr", 0));
  EXPECT_EQ(store.calls.back(), "finish");
  expectAcknowledged(2);
}

TEST_F(TargetReceiving, EveryNewChunkIsProgress) {
  reach(State::kReceiving);
  receive(fileData(3, std::string(1452, 'x')));
  receive(fileData(3, std::string(1452, 'x')));
  receive(fileData(4, std::string(548, 'x')));
  EXPECT_THAT(console.progresses, ElementsAre("system.bdl 1452/2000", "system.bdl 2000/2000"));
}

TEST_F(TargetReceiving, AcknowledgesTheRepeatedScriptWhenItIsInstalled) {
  reach(State::kInstalled);
  receive(fileHeader(2, "autorun.scr", 0));
  expectAcknowledged(2);
  EXPECT_EQ(session.state(), State::kInstalled);
}

TEST_F(TargetReceiving, IgnoresKeys) {
  reach(State::kReceiving);
  session.keyPressed(link.clock.now());
  EXPECT_EQ(session.state(), State::kReceiving);
  EXPECT_THAT(takeSent(), IsEmpty());
}

}  // namespace
}  // namespace omniset::test
