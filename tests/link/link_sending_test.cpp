// Connections, and building and sending frames on them.
#include <gtest/gtest.h>

#include "link/link_protocol.h"
#include "tests/link/link_fixture.h"

namespace omniset::test {
namespace {

TEST(LinkConnection, StartsUnboundWithSequenceOneAndAcknowledgementZero) {
  const LinkConnection connection;
  EXPECT_EQ(connection.sequence, 1);
  EXPECT_EQ(connection.acknowledgement, 0);
  EXPECT_EQ(connection.local, kNobody);
  EXPECT_EQ(connection.peer, kNobody);
  EXPECT_EQ(connection.wildcard, kNobody);
  EXPECT_FALSE(connection.isBound());
}

TEST(LinkConnection, ResetUndoesBindingAndNumbers) {
  LinkConnection connection = boundConnection(9, 8);
  EXPECT_TRUE(connection.isBound());
  connection.reset();
  EXPECT_EQ(connection.sequence, 1);
  EXPECT_EQ(connection.acknowledgement, 0);
  EXPECT_EQ(connection.local, kNobody);
  EXPECT_FALSE(connection.isBound());
}

TEST(MakeHeader, AcknowledgingFrameCarriesTheAcknowledgementNumber) {
  const LinkConnection connection = boundConnection(5, 7);
  LinkFrame frame;
  makeHeader(connection, frame, 12, true, kControlChannel);
  const FrameHeader header = frame.header();
  EXPECT_EQ(header.source, kInstallerMac);
  EXPECT_EQ(header.destination, kTargetMac);
  EXPECT_TRUE(header.isAck);
  EXPECT_EQ(header.channel, 0);
  EXPECT_EQ(header.payloadLength, 12);
  EXPECT_EQ(header.sequence, 5);
  EXPECT_EQ(header.acknowledgement, 7);
}

TEST(MakeHeader, OtherFrameCarriesZeroAsAcknowledgement) {
  const LinkConnection connection = boundConnection(5, 7);
  LinkFrame frame;
  makeHeader(connection, frame, 1452, false, kDataChannel);
  const FrameHeader header = frame.header();
  EXPECT_FALSE(header.isAck);
  EXPECT_EQ(header.channel, 1);
  EXPECT_EQ(header.sequence, 5);
  EXPECT_EQ(header.acknowledgement, 0);
}

TEST(MakeHeader, LeavesThePayloadAlone) {
  LinkFrame frame = makeFrame(kTargetMac, kInstallerMac, 1, kNoAck, "payload");
  makeHeader(boundConnection(1, 1), frame, 7, false, kControlChannel);
  EXPECT_EQ(frame.payloadText(), "payload");
}

TEST(SendAcknowledgement, IsAHeaderAloneOnTheControlChannel) {
  LinkFixture link;
  LinkFrame buffer;
  sendAcknowledgement(link.endpoint, boundConnection(5, 7), buffer);
  ASSERT_EQ(link.sentCount(), 1u);
  EXPECT_EQ(link.network->sent[0].bytes.size(), 20u);
  const FrameHeader header = link.sent(0).header();
  EXPECT_TRUE(header.isAck);
  EXPECT_EQ(header.channel, 0);
  EXPECT_EQ(header.payloadLength, 0);
  EXPECT_EQ(header.sequence, 5);
  EXPECT_EQ(header.acknowledgement, 7);
}

TEST(SendControl, CarriesTheTextAndTheAcknowledgement) {
  LinkFixture link;
  LinkFrame buffer;
  sendControl(link.endpoint, boundConnection(5, 7), buffer, "OFFR\n");
  ASSERT_EQ(link.sentCount(), 1u);
  EXPECT_EQ(link.network->sent[0].bytes.size(), 25u);
  const LinkFrame frame = link.sent(0);
  EXPECT_EQ(frame.payloadText(), "OFFR\n");
  EXPECT_TRUE(frame.header().isAck);
  EXPECT_EQ(frame.header().channel, 0);
  EXPECT_EQ(frame.header().acknowledgement, 7);
}

}  // namespace
}  // namespace omniset::test
