// Announcements, and the offers that they draw.
#include "target_fixture.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct TargetAnnouncing : TargetFixture {
  static LinkFrame offerTo(const MacAddress& from, const MacAddress& to, int sequence = 1,
                           int ack = 1) {
    return makeFrame(from, to, sequence, ack, "OFFR\n");
  }
  // Was a frame ignored by a session that announces itself?
  void expectIgnored(const LinkFrame& frame) {
    reach(State::kAnnouncing);
    receive(frame);
    EXPECT_EQ(session.state(), State::kAnnouncing);
    EXPECT_THAT(console.sentences, IsEmpty());
    pass(kSecond);
    expectAnnouncedAnew();
  }
};

TEST_F(TargetAnnouncing, AnnouncesItselfAtOnce) {
  EXPECT_EQ(session.deadline(), link.clock.now());
  pass(0);
  EXPECT_THAT(takeSentTexts(), ElementsAre("DSCV\nLinux x86_64\none disk\nlab-7\n"));
}

TEST_F(TargetAnnouncing, AnnouncesItselfEachSecond) {
  pass(10 * kSecond);
  EXPECT_EQ(takeSent().size(), 11u);
  pass(999 * kMillisecond);
  EXPECT_EQ(takeSent().size(), 0u);
  pass(kMillisecond);
  EXPECT_EQ(takeSent().size(), 1u);
}

TEST_F(TargetAnnouncing, GoesToNobodyInParticularAndAcknowledgesNothing) {
  pass(5 * kSecond);
  for (const LinkFrame& frame : takeSent()) {
    const FrameHeader header = frame.header();
    EXPECT_EQ(header.source, kTargetMac);
    EXPECT_EQ(header.destination, kNobody);
    EXPECT_FALSE(header.isAck);
    EXPECT_EQ(header.acknowledgement, 0);
    EXPECT_EQ(header.sequence, 1);
    EXPECT_EQ(header.channel, kControlChannel);
  }
}

TEST_F(TargetAnnouncing, LinesStayLinesAndWithinWhatTheInstallerLooksAt) {
  const std::string longText = "a\nb" + std::string(5000, 'x');
  TargetSession wordy({kTargetMac, longText, longText, longText}, link.endpoint, store, console,
                      link.clock.now());
  wordy.timerFired(link.clock.now());
  const auto texts = takeSentTexts();
  ASSERT_EQ(texts.size(), 1u);
  const std::string line = "a b" + std::string(197, 'x') + "\n";
  EXPECT_EQ(texts[0], "DSCV\n" + line + line + line);
}

TEST_F(TargetAnnouncing, TakesAnOfferAndAnswersItAtOnce) {
  reach(State::kAnnouncing);
  receive(offer());
  EXPECT_EQ(session.state(), State::kAccepting);
  EXPECT_EQ(session.deadline(), link.clock.now());
  pass(0);
  const auto sent = takeSent();
  ASSERT_EQ(sent.size(), 1u);
  const FrameHeader header = sent[0].header();
  EXPECT_EQ(sent[0].payloadText(), "YACK\n");
  EXPECT_EQ(header.destination, kInstallerMac);
  EXPECT_TRUE(header.isAck);
  EXPECT_EQ(header.sequence, 2);
  EXPECT_EQ(header.acknowledgement, 1);
  EXPECT_THAT(console.sentences, ElementsAre("Offer from 02:00:00:00:00:01."));
}

TEST_F(TargetAnnouncing, TakesAnOfferBeforeItsFirstAnnouncement) {
  receive(offer());
  EXPECT_EQ(session.state(), State::kAccepting);
}

TEST_F(TargetAnnouncing, AnOfferWithTheLineKeepKeepsTheConfiguration) {
  reach(State::kAnnouncing);
  receive(offer("OFFR\nkeep\n"));
  receive(acknowledgementOf(2));
  EXPECT_THAT(console.sentences,
              ElementsAre("Offer from 02:00:00:00:00:01, keeping the configuration.",
                          "Preparing the disk..."));
  EXPECT_THAT(store.calls, ElementsAre("prepare, keep"));
}

TEST_F(TargetAnnouncing, OnlyAWholeLineKeepKeepsTheConfiguration) {
  reach(State::kAnnouncing);
  receive(offer("OFFRkeep\nkeeper\n keep\nkee\n"));
  receive(acknowledgementOf(2));
  EXPECT_THAT(store.calls, ElementsAre("prepare"));
}

TEST_F(TargetAnnouncing, IgnoresOffersToOthers) {
  expectIgnored(offerTo(kInstallerMac, kStrangerMac));
}

TEST_F(TargetAnnouncing, IgnoresAnOfferToNobodyInParticular) {
  expectIgnored(offerTo(kInstallerMac, kNobody));
}

TEST_F(TargetAnnouncing, IgnoresAnnouncementsOfOthersAndTheirNumbers) {
  expectIgnored(makeFrame(kStrangerMac, kNobody, 1, kNoAck, "DSCV\na\nb\nc\n"));
  receive(offer());
  EXPECT_EQ(session.state(), State::kAccepting);
}

TEST_F(TargetAnnouncing, IgnoresItsOwnFrames) {
  expectIgnored(offerTo(kTargetMac, kTargetMac));
}

TEST_F(TargetAnnouncing, IgnoresAnOfferOfAWrongSequence) {
  expectIgnored(offerTo(kInstallerMac, kTargetMac, 2));
  expectIgnored(offerTo(kInstallerMac, kTargetMac, 0));
}

TEST_F(TargetAnnouncing, IgnoresAnOfferThatAcknowledgesWhatWasNeverSent) {
  expectIgnored(offerTo(kInstallerMac, kTargetMac, 1, 2));
}

TEST_F(TargetAnnouncing, IgnoresAnOfferWithoutASource) {
  expectIgnored(offerTo(kNobody, kTargetMac));
}

TEST_F(TargetAnnouncing, IgnoresOtherWordsAndPureAcknowledgements) {
  for (const char* text : {"", "FILE\nx\n1\n", "TERM\n", "YACK\n", "offr\n", "OFF"}) {
    expectIgnored(makeFrame(kInstallerMac, kTargetMac, 1, 1, text));
  }
}

TEST_F(TargetAnnouncing, IgnoresKeys) {
  reach(State::kAnnouncing);
  session.keyPressed(link.clock.now());
  EXPECT_EQ(session.state(), State::kAnnouncing);
}

TEST_F(TargetAnnouncing, ANetworkThatCannotBeSentToIsTriedAgainAfterARest) {
  link.network->failing = "sendTo";
  pass(0);
  EXPECT_FALSE(session.isEngaged());
  ASSERT_EQ(console.sentences.size(), 1u);
  EXPECT_THAT(console.sentences[0], ::testing::HasSubstr(" cannot be announced: sendto() failed"));
  EXPECT_EQ(session.deadline() - link.clock.now(), 10 * kSecond);
  link.network->failing.clear();
  pass(10 * kSecond);
  expectAnnouncedAnew();
}

}  // namespace
}  // namespace omniset::test
