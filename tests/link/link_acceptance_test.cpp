// Which frames a connection takes.
#include <gtest/gtest.h>

#include "link/link_protocol.h"
#include "tests/fakes/captured_trace.h"
#include "tests/link/link_fixture.h"

namespace omniset::test {
namespace {

// A frame of the target to the installer and a connection between them, with the trace captured.
struct Acceptance : ::testing::Test {
  bool isForUs(LinkFrame frame) { return isFrameForUs(connection, frame, frame.datagram().size()); }
  bool accepts(LinkFrame frame) { return acceptFrame(connection, frame, frame.datagram().size()); }
  bool repeats(LinkFrame frame) { return isRepetition(connection, frame, frame.datagram().size()); }

  LinkConnection connection = boundConnection(5, 7);
  CapturedTrace trace;
};

using IsFrameForUs = Acceptance;
using AcceptFrame = Acceptance;
using IsRepetition = Acceptance;

TEST_F(IsFrameForUs, NineteenBytesAreDroppedSilentlyAndZeroTheFirstFourBytes) {
  LinkFrame frame = makeFrame(kTargetMac, kInstallerMac, 8, 5, "x");
  frame.bytes[0] = frame.bytes[1] = frame.bytes[2] = frame.bytes[3] = 0xEE;
  const LinkFrame before = frame;
  EXPECT_FALSE(isFrameForUs(connection, frame, 19));
  EXPECT_EQ(trace.text(), "");
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(frame.bytes[i], 0);
  EXPECT_TRUE(std::equal(frame.bytes.begin() + 4, frame.bytes.end(), before.bytes.begin() + 4));
}

TEST_F(IsFrameForUs, DatagramOfNoBytesIsDroppedLikeAShortOne) {
  LinkFrame frame = makeFrame(kTargetMac, kInstallerMac, 8, 5);
  EXPECT_FALSE(isFrameForUs(connection, frame, 0));
  EXPECT_EQ(frame.bytes[0], 0);
  EXPECT_EQ(trace.text(), "");
}

TEST_F(IsFrameForUs, TwentyBytesWithoutPayloadAreAFrame) {
  EXPECT_TRUE(isForUs(makeFrame(kTargetMac, kInstallerMac, 8, 5)));
}

TEST_F(IsFrameForUs, SizeMismatchIsTracedWithBothNumbers) {
  LinkFrame frame = makeFrame(kTargetMac, kInstallerMac, 8, 5, "123456789012");
  EXPECT_FALSE(isFrameForUs(connection, frame, 30));
  EXPECT_EQ(trace.text(), "* size mismatch: size: 30, payload: 12\n");
}

TEST_F(IsFrameForUs, LongerDatagramThanAnnouncedIsAMismatchToo) {
  LinkFrame frame = makeFrame(kTargetMac, kInstallerMac, 8, 5);
  EXPECT_FALSE(isFrameForUs(connection, frame, 21));
  EXPECT_EQ(trace.text(), "* size mismatch: size: 21, payload: 0\n");
}

TEST_F(IsFrameForUs, SizeIsCheckedBeforeTheAddresses) {
  LinkFrame frame = makeFrame(kInstallerMac, kStrangerMac, 8, 5);
  EXPECT_FALSE(isFrameForUs(connection, frame, 21));
  EXPECT_EQ(trace.text(), "* size mismatch: size: 21, payload: 0\n");
}

TEST_F(IsFrameForUs, OwnFrameComingBackIsDroppedSilently) {
  EXPECT_FALSE(isForUs(makeFrame(kInstallerMac, kInstallerMac, 8, 5)));
  EXPECT_EQ(trace.text(), "");
}

TEST_F(IsFrameForUs, OwnFrameComingBackIsDroppedByAnUnboundConnectionToo) {
  connection.peer = kNobody;
  EXPECT_FALSE(isForUs(makeFrame(kInstallerMac, kNobody, 8, 5)));
}

TEST_F(IsFrameForUs, FrameToNobodyIsDroppedSilentlyByABoundConnection) {
  EXPECT_FALSE(isForUs(makeFrame(kTargetMac, kNobody, 8, 5)));
  EXPECT_EQ(trace.text(), "");
}

TEST_F(IsFrameForUs, FrameToNobodyIsTakenByAnUnboundConnection) {
  connection.peer = kNobody;
  EXPECT_TRUE(isForUs(makeFrame(kStrangerMac, kNobody, 8, 5)));
}

TEST_F(IsFrameForUs, FrameToAnotherIsDroppedSilently) {
  EXPECT_FALSE(isForUs(makeFrame(kTargetMac, kStrangerMac, 8, 5)));
  EXPECT_EQ(trace.text(), "");
}

TEST_F(IsFrameForUs, FrameToAnotherIsDroppedByAnUnboundConnectionToo) {
  connection.peer = kNobody;
  EXPECT_FALSE(isForUs(makeFrame(kTargetMac, kStrangerMac, 8, 5)));
}

TEST_F(IsFrameForUs, UnboundConnectionTakesAnySource) {
  connection.peer = kNobody;
  EXPECT_TRUE(isForUs(makeFrame(kStrangerMac, kInstallerMac, 8, 5)));
  EXPECT_EQ(trace.text(), "");
}

TEST_F(IsFrameForUs, BoundConnectionTakesItsPeer) {
  EXPECT_TRUE(isForUs(makeFrame(kTargetMac, kInstallerMac, 8, 5)));
  EXPECT_EQ(trace.text(), "");
}

TEST_F(IsFrameForUs, StrangersFrameToUsIsTracedAsInvalidSource) {
  EXPECT_FALSE(isForUs(makeFrame(kStrangerMac, kInstallerMac, 8, 5)));
  EXPECT_EQ(trace.text(), "* invalid source\n");
}

TEST_F(AcceptFrame, FrameThatIsNotForUsChangesNothing) {
  EXPECT_FALSE(accepts(makeFrame(kStrangerMac, kInstallerMac, 8, 5, "x")));
  EXPECT_EQ(trace.text(), "* invalid source\n");
  EXPECT_EQ(connection.acknowledgement, 7);
}

TEST_F(AcceptFrame, AcknowledgementBeyondWhatWasSentIsDumpedAndRefused) {
  EXPECT_FALSE(accepts(makeFrame(kTargetMac, kInstallerMac, 8, 6, "x")));
  EXPECT_EQ(trace.text(),
            "* recv ack bigger than sent seq\n"
            "Src: 02:00:00:01:02:03\tDst: 02:00:00:00:00:01\n"
            "Is ack: 1\tChannel: 0\tPayload: 1\n"
            "SeqNum: 8\tAckNum: 6\n"
            "conn seqNum: 5, ackNum: 7\n");
  EXPECT_EQ(connection.acknowledgement, 7);
}

TEST_F(AcceptFrame, PureAcknowledgementBeyondWhatWasSentIsRefusedToo) {
  EXPECT_FALSE(accepts(makeFrame(kTargetMac, kInstallerMac, 8, 6)));
  EXPECT_TRUE(trace.contains("* recv ack bigger than sent seq\n"));
}

TEST_F(AcceptFrame, AcknowledgementFieldDoesNotCountWithoutIsAck) {
  LinkFrame frame = makeFrame(kTargetMac, kInstallerMac, 8, kNoAck, "x");
  FrameHeader header = frame.header();
  header.acknowledgement = 999;
  frame.setHeader(header);
  EXPECT_TRUE(accepts(frame));
}

TEST_F(AcceptFrame, PureAcknowledgementChangesNothingWhateverItsNumber) {
  EXPECT_TRUE(accepts(makeFrame(kTargetMac, kInstallerMac, 8, 5)));
  EXPECT_TRUE(accepts(makeFrame(kTargetMac, kInstallerMac, 1234, 3)));
  EXPECT_EQ(connection.acknowledgement, 7);
  EXPECT_EQ(connection.sequence, 5);
  EXPECT_EQ(trace.text(), "");
}

TEST_F(AcceptFrame, NextNumberIsTakenAndItsRepetitionAndOthersAreBadSequences) {
  connection.acknowledgement = 3;
  const LinkFrame next = makeFrame(kTargetMac, kInstallerMac, 4, kNoAck, "x", kDataChannel);
  EXPECT_TRUE(accepts(next));
  EXPECT_EQ(connection.acknowledgement, 4);
  EXPECT_EQ(trace.text(), "");
  EXPECT_FALSE(accepts(next));
  EXPECT_EQ(trace.text(),
            "* recv bad seq\n"
            "Src: 02:00:00:01:02:03\tDst: 02:00:00:00:00:01\n"
            "Is ack: 0\tChannel: 1\tPayload: 1\n"
            "SeqNum: 4\tAckNum: 0\n"
            "conn seqNum: 5, ackNum: 4\n");
  trace.clear();
  EXPECT_FALSE(accepts(makeFrame(kTargetMac, kInstallerMac, 6, kNoAck, "x")));
  EXPECT_TRUE(trace.contains("* recv bad seq\n"));
  EXPECT_EQ(connection.acknowledgement, 4);
}

TEST_F(AcceptFrame, NumbersEndAt65535BecauseTheExpectedOneDoesNotWrap) {
  connection.acknowledgement = 65534;
  EXPECT_TRUE(accepts(makeFrame(kTargetMac, kInstallerMac, 65535, kNoAck, "x")));
  EXPECT_FALSE(accepts(makeFrame(kTargetMac, kInstallerMac, 0, kNoAck, "x")));
  EXPECT_TRUE(trace.contains("* recv bad seq\n"));
  EXPECT_EQ(connection.acknowledgement, 65535);
}

TEST_F(AcceptFrame, AfterOurNumberWrappedAnOldAcknowledgementIsBiggerThanSent) {
  connection.sequence = 65535;
  ++connection.sequence;
  EXPECT_EQ(connection.sequence, 0);
  EXPECT_FALSE(accepts(makeFrame(kTargetMac, kInstallerMac, 8, 65535)));
  EXPECT_TRUE(trace.contains("* recv ack bigger than sent seq\n"));
  EXPECT_TRUE(accepts(makeFrame(kTargetMac, kInstallerMac, 8, 0)));
}

TEST_F(AcceptFrame, ShortDatagramChangesNothing) {
  LinkFrame frame = makeFrame(kTargetMac, kInstallerMac, 8, 5, "x");
  EXPECT_FALSE(acceptFrame(connection, frame, 19));
  EXPECT_EQ(connection.acknowledgement, 7);
}

TEST_F(IsRepetition, LastFrameTakenComingAgainIsOne) {
  EXPECT_TRUE(repeats(makeFrame(kTargetMac, kInstallerMac, 7, kNoAck, "x")));
}

TEST_F(IsRepetition, OtherNumbersAreNone) {
  EXPECT_FALSE(repeats(makeFrame(kTargetMac, kInstallerMac, 8, kNoAck, "x")));
  EXPECT_FALSE(repeats(makeFrame(kTargetMac, kInstallerMac, 6, kNoAck, "x")));
}

TEST_F(IsRepetition, PureAcknowledgementIsNone) {
  EXPECT_FALSE(repeats(makeFrame(kTargetMac, kInstallerMac, 7, 5)));
}

TEST_F(IsRepetition, StrangersFramesAndFramesToOthersAreNone) {
  EXPECT_FALSE(repeats(makeFrame(kStrangerMac, kInstallerMac, 7, kNoAck, "x")));
  EXPECT_FALSE(repeats(makeFrame(kTargetMac, kStrangerMac, 7, kNoAck, "x")));
}

TEST_F(IsRepetition, DamagedFramesAreNone) {
  LinkFrame frame = makeFrame(kTargetMac, kInstallerMac, 7, kNoAck, "abc");
  EXPECT_FALSE(isRepetition(connection, frame, 22));
  EXPECT_FALSE(isRepetition(connection, frame, 19));
  EXPECT_FALSE(isRepetition(connection, frame, 0));
}

}  // namespace
}  // namespace omniset::test
