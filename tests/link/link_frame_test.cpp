#include "link/link_frame.h"

#include <gtest/gtest.h>

#include "tests/fakes/captured_trace.h"
#include "tests/link/link_fixture.h"

namespace omniset::test {
namespace {

FrameHeader sampleHeader() {
  FrameHeader header;
  header.source = {{0x02, 0x11, 0x22, 0x33, 0x44, 0x55}};
  header.destination = {{0x0A, 0x1B, 0x2C, 0x3D, 0x4E, 0x5F}};
  header.isAck = true;
  header.channel = 1;
  header.payloadLength = 0x0123;
  header.sequence = 0x4567;
  header.acknowledgement = 0x89AB;
  return header;
}

// sampleHeader() as it travels.
constexpr std::array<std::uint8_t, 20> kSampleBytes{
    0x02, 0x11, 0x22, 0x33, 0x44, 0x55,  // source
    0x0A, 0x1B, 0x2C, 0x3D, 0x4E, 0x5F,  // destination
    0x01,                                // flags
    0x01,                                // channel
    0x23, 0x01,                          // payload length
    0x67, 0x45,                          // sequence
    0xAB, 0x89,                          // acknowledgement
};

TEST(LinkFrame, HeaderIsWrittenByteByByteInLittleEndianOrder) {
  LinkFrame frame;
  frame.setHeader(sampleHeader());
  const std::array<std::uint8_t, 20> written = [&] {
    std::array<std::uint8_t, 20> bytes{};
    std::copy_n(frame.bytes.begin(), bytes.size(), bytes.begin());
    return bytes;
  }();
  EXPECT_EQ(written, kSampleBytes);
  EXPECT_EQ(frame.bytes[20], 0);
}

TEST(LinkFrame, HeaderIsReadFromItsBytes) {
  LinkFrame frame;
  std::copy(kSampleBytes.begin(), kSampleBytes.end(), frame.bytes.begin());
  const FrameHeader header = frame.header();
  EXPECT_EQ(header.source, sampleHeader().source);
  EXPECT_EQ(header.destination, sampleHeader().destination);
  EXPECT_TRUE(header.isAck);
  EXPECT_EQ(header.channel, 1);
  EXPECT_EQ(header.payloadLength, 0x0123);
  EXPECT_EQ(header.sequence, 0x4567);
  EXPECT_EQ(header.acknowledgement, 0x89AB);
}

TEST(LinkFrame, FlagBitsOneToSevenAreIgnoredOnReceive) {
  LinkFrame frame;
  frame.bytes[12] = 0xFE;
  EXPECT_FALSE(frame.header().isAck);
  frame.bytes[12] = 0xFF;
  EXPECT_TRUE(frame.header().isAck);
}

TEST(LinkFrame, FlagBitsOneToSevenAreZeroOnSend) {
  LinkFrame frame;
  frame.bytes[12] = 0xFF;
  FrameHeader header;
  frame.setHeader(header);
  EXPECT_EQ(frame.bytes[12], 0);
  frame.bytes[12] = 0xFF;
  header.isAck = true;
  frame.setHeader(header);
  EXPECT_EQ(frame.bytes[12], 1);
}

TEST(LinkFrame, ChannelIsAWholeByte) {
  LinkFrame frame;
  frame.bytes[13] = 0xC8;
  EXPECT_EQ(frame.header().channel, 0xC8);
}

TEST(LinkFrame, PayloadIsWhatTheHeaderAnnounces) {
  const LinkFrame frame = makeFrame(kInstallerMac, kTargetMac, 1, kNoAck, "OFFR\n");
  EXPECT_EQ(frame.payloadText(), "OFFR\n");
  EXPECT_EQ(frame.datagram().size(), 25u);
}

TEST(LinkFrame, PayloadLongerThanTheBufferEndsWithTheBuffer) {
  LinkFrame frame;
  FrameHeader header;
  header.payloadLength = 0xFFFF;
  frame.setHeader(header);
  EXPECT_EQ(frame.payload().size(), 4096u);
  EXPECT_EQ(frame.datagram().size(), 4116u);
}

TEST(LinkFrame, LargestChunkMakesTheLargestUnfragmentedDatagram) {
  const LinkFrame frame =
      makeFrame(kInstallerMac, kTargetMac, 1, kNoAck, std::string(kChunkLength, 'x'));
  EXPECT_EQ(frame.datagram().size(), 1472u);
}

TEST(DumpFrame, WritesTheWholeHeader) {
  const CapturedTrace trace;
  LinkFrame frame;
  frame.setHeader(sampleHeader());
  dumpFrame(frame);
  EXPECT_EQ(trace.text(),
            "Src: 02:11:22:33:44:55\tDst: 0A:1B:2C:3D:4E:5F\n"
            "Is ack: 1\tChannel: 1\tPayload: 291\n"
            "SeqNum: 17767\tAckNum: 35243\n");
}

TEST(DumpFrame, WritesNumbersUnsigned) {
  const CapturedTrace trace;
  LinkFrame frame;
  frame.bytes.fill(0xFF);
  frame.bytes[12] = 0xFE;
  dumpFrame(frame);
  EXPECT_EQ(trace.text(),
            "Src: FF:FF:FF:FF:FF:FF\tDst: FF:FF:FF:FF:FF:FF\n"
            "Is ack: 0\tChannel: 255\tPayload: 65535\n"
            "SeqNum: 65535\tAckNum: 65535\n");
}

}  // namespace
}  // namespace omniset::test
