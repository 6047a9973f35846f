#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/error.h"
#include "link/link_protocol.h"
#include "tests/fakes/captured_trace.h"
#include "tests/link/link_fixture.h"
#include "tests/link/timed_socket.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;

// A frame numbered 5 waits for its acknowledgement, 100 ms each time.
struct SendAndWaitAck : ::testing::Test {
  int exchange(int tries) {
    return sendAndWaitAck(endpoint, network->clock, connection, outgoing, incoming,
                          outgoing.datagram().size(), 100 * kMillisecond, tries);
  }
  void arriveAfter(Micros delay, const LinkFrame& frame) {
    network->arriveAt(start + delay, frame.datagram());
  }

  std::shared_ptr<TimedNetwork> network = std::make_shared<TimedNetwork>();
  Micros start = network->clock.now();
  BroadcastEndpoint endpoint{kInstallerMac, nullptr, kInstallPort,
                             std::make_unique<TimedSocket>(network)};
  LinkConnection connection = boundConnection(5, 7);
  LinkFrame outgoing = makeFrame(kInstallerMac, kTargetMac, 5, kNoAck, "data");
  LinkFrame incoming;
  CapturedTrace trace;
};

TEST_F(SendAndWaitAck, ReturnsTheLengthOfTheAcknowledgingFrame) {
  arriveAfter(kMillisecond, makeFrame(kTargetMac, kInstallerMac, 8, 5, "YACK\n"));
  EXPECT_EQ(exchange(3), 25);
  EXPECT_EQ(incoming.payloadText(), "YACK\n");
  EXPECT_EQ(connection.acknowledgement, 8);
  EXPECT_EQ(network->sentAt.size(), 1u);
}

TEST_F(SendAndWaitAck, LeavesTheSequenceNumberToTheCaller) {
  arriveAfter(kMillisecond, makeFrame(kTargetMac, kInstallerMac, 8, 5));
  EXPECT_EQ(exchange(1), 20);
  EXPECT_EQ(connection.sequence, 5);
}

TEST_F(SendAndWaitAck, UnansweredFrameIsSentOncePerTryAtTheTimeout) {
  EXPECT_EQ(exchange(3), -1);
  EXPECT_THAT(network->sentAt,
              ElementsAre(start, start + 100 * kMillisecond, start + 200 * kMillisecond));
  EXPECT_EQ(network->clock.now(), start + 300 * kMillisecond);
}

TEST_F(SendAndWaitAck, AnswerToTheRepetitionCounts) {
  arriveAfter(150 * kMillisecond, makeFrame(kTargetMac, kInstallerMac, 8, 5));
  EXPECT_EQ(exchange(3), 20);
  EXPECT_EQ(network->sentAt.size(), 2u);
}

TEST_F(SendAndWaitAck, WithoutTriesNothingIsSent) {
  EXPECT_EQ(exchange(0), -1);
  EXPECT_TRUE(network->sentAt.empty());
}

TEST_F(SendAndWaitAck, OldAcknowledgementIsTracedAndTheWaitGoesOn) {
  arriveAfter(10 * kMillisecond, makeFrame(kTargetMac, kInstallerMac, 8, 4));
  arriveAfter(20 * kMillisecond, makeFrame(kTargetMac, kInstallerMac, 8, 5));
  EXPECT_EQ(exchange(1), 20);
  EXPECT_EQ(trace.text(), "* recv old ack conn.seqNum: 5, hdr.ackNum: 4\n");
  EXPECT_EQ(network->sentAt.size(), 1u);
}

TEST_F(SendAndWaitAck, RefusedFrameDoesNotLengthenTheWait) {
  arriveAfter(60 * kMillisecond, makeFrame(kStrangerMac, kInstallerMac, 8, 5));
  arriveAfter(110 * kMillisecond, makeFrame(kTargetMac, kInstallerMac, 8, 5));
  EXPECT_EQ(exchange(1), -1);
  EXPECT_EQ(network->clock.now(), start + 100 * kMillisecond);
}

TEST_F(SendAndWaitAck, OnlyTheGivenLengthIsSent) {
  LinkFixture link;
  const int answer =
      sendAndWaitAck(link.endpoint, link.clock, connection, outgoing, incoming, 22, kSecond, 1);
  EXPECT_EQ(answer, -1);
  ASSERT_EQ(link.sentCount(), 1u);
  EXPECT_EQ(link.network->sent[0].bytes.size(), 22u);
}

TEST_F(SendAndWaitAck, SocketFailurePassesThrough) {
  LinkFixture link;
  link.network->failing = "sendTo";
  EXPECT_THROW(
      sendAndWaitAck(link.endpoint, link.clock, connection, outgoing, incoming, 24, kSecond, 1),
      SocketExc);
}

}  // namespace
}  // namespace omniset::test
