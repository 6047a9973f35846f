// Frames that no honest target sends.
#include "tests/install/session_fixture.h"

namespace omniset::test {
namespace {

struct SessionHostile : SessionFixture {
  SessionHostile() { startTo(State::kPreparing); }

  // Nothing that was heard may have moved the session.
  void expectUntouched() const {
    EXPECT_EQ(session->state(), State::kPreparing);
    EXPECT_EQ(state().status, RouterStatus::kInstalling);
    EXPECT_EQ(session->deadline(), 0);
    EXPECT_EQ(link.sentCount(), 1u);
  }
};

TEST_F(SessionHostile, StrangersFrameIsABadPacket) {
  hear(makeFrame(kStrangerMac, kInstallerMac, 3, 1, "STRT\n"));
  expectUntouched();
  EXPECT_EQ(trace.text(),
            "* invalid source\n"
            "bad packet received: Src: 02:00:00:0A:0B:0C\tDst: 02:00:00:00:00:01\n"
            "Is ack: 1\tChannel: 0\tPayload: 5\n"
            "SeqNum: 3\tAckNum: 1\n"
            "Data: STRT\n\n");
}

TEST_F(SessionHostile, AcknowledgementOfTheFutureIsABadPacketWithoutData) {
  hear(makeFrame(kTargetMac, kInstallerMac, 3, 3));
  expectUntouched();
  EXPECT_TRUE(trace.contains("* recv ack bigger than sent seq\n"));
  EXPECT_TRUE(trace.contains("bad packet received: "));
  EXPECT_FALSE(trace.contains("Data: "));
}

TEST_F(SessionHostile, DataOfABadPacketIsWrittenUpToAZeroByte) {
  hear(makeFrame(kStrangerMac, kInstallerMac, 3, 1, std::string_view("ab\0cd", 5)));
  EXPECT_TRUE(trace.text().ends_with("Data: ab\n")) << trace.text();
}

TEST_F(SessionHostile, LengthsThatDoNotFitAreBadPackets) {
  LinkFrame frame = makeFrame(kTargetMac, kInstallerMac, 3, 1, "STRT\n");
  for (const std::size_t length : {std::size_t{0}, std::size_t{19}, std::size_t{20},
                                   std::size_t{24}, std::size_t{26}, std::size_t{4096}}) {
    LinkFrame copy = frame;
    session->frameReceived(copy, length, now());
    expectUntouched();
  }
}

TEST_F(SessionHostile, PayloadLongerThanTheBufferIsDumpedWithinIt) {
  LinkFrame frame = makeFrame(kTargetMac, kInstallerMac, 3, 1);
  FrameHeader header = frame.header();
  header.payloadLength = 65535;
  frame.setHeader(header);
  std::fill(frame.bytes.begin() + kFrameHeaderLength, frame.bytes.end(), std::uint8_t{'x'});
  session->frameReceived(frame, 4096, now());
  expectUntouched();
  EXPECT_TRUE(trace.text().ends_with("Data: " + std::string(4096, 'x') + "\n"));
}

TEST_F(SessionHostile, EchoOfItsOwnFrameIsABadPacket) {
  hear(link.sent(0));
  expectUntouched();
}

TEST_F(SessionHostile, FrameToAllOrToAnotherIsABadPacket) {
  hear(makeFrame(kTargetMac, kNobody, 3, 1, "STRT\n"));
  hear(makeFrame(kTargetMac, kStrangerMac, 3, 1, "STRT\n"));
  expectUntouched();
}

TEST_F(SessionHostile, BadPacketsDoNotSpendTries) {
  for (int i = 0; i < 5000; ++i) hear(makeFrame(kTargetMac, kInstallerMac, 77, 1, "STRT\n"));
  expectUntouched();
  for (int i = 0; i < 1800; ++i) fire();
  EXPECT_EQ(session->state(), State::kPreparing);
}

}  // namespace
}  // namespace omniset::test
