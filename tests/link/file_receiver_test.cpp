// The receiver fed frame by frame.
#include "link/file_receiver.h"

#include <gtest/gtest.h>

#include "tests/link/receiver_fixture.h"

namespace omniset::test {
namespace {

using Header = FileReceiver::Header;

struct FileReceiverTest : ::testing::Test {
  Header takeHeader(LinkFrame frame) { return receiver.takeHeader(frame, frame.datagram().size()); }
  std::string takeData(LinkFrame frame) {
    const auto bytes = receiver.takeData(frame, frame.datagram().size());
    return {bytes.begin(), bytes.end()};
  }
  std::string faultOfHeader(const LinkFrame& frame) {
    return faultOf([&] { takeHeader(frame); });
  }
  std::string faultOfData(const LinkFrame& frame) {
    return faultOf([&] { takeData(frame); });
  }
  template <class Call>
  static std::string faultOf(Call call) {
    try {
      call();
    } catch (const Error& e) {
      return e.what();
    }
    return "none";
  }

  LinkFixture link;
  LinkConnection connection = targetConnection();
  FileReceiver receiver{link.endpoint, connection};
  CapturedTrace trace;
};

using FileHeader = FileReceiverTest;
using FileData = FileReceiverTest;

TEST_F(FileHeader, GivesNameAndSize) {
  EXPECT_EQ(takeHeader(control(2, "FILE\nsystem-2.9.bdl\n2904\n")), Header::kFile);
  EXPECT_EQ(receiver.name(), "system-2.9.bdl");
  EXPECT_EQ(receiver.size(), 2904);
  EXPECT_EQ(receiver.bytesReceived(), 0);
  EXPECT_FALSE(receiver.isComplete());
  EXPECT_EQ(connection.acknowledgement, 2);
}

TEST_F(FileHeader, IsAcknowledgedOnlyWhenTheOwnerIsReady) {
  takeHeader(control(2, "FILE\nx\n1\n"));
  EXPECT_EQ(link.sentCount(), 0u);
  receiver.acknowledge();
  ASSERT_EQ(link.sentCount(), 1u);
  const FrameHeader header = link.sent(0).header();
  EXPECT_TRUE(header.isAck);
  EXPECT_EQ(header.channel, 0);
  EXPECT_EQ(header.payloadLength, 0);
  EXPECT_EQ(header.acknowledgement, 2);
  EXPECT_EQ(header.sequence, 4);
}

TEST_F(FileHeader, EmptyFileIsCompleteAtOnce) {
  EXPECT_EQ(takeHeader(control(2, "FILE\nempty\n0\n")), Header::kFile);
  EXPECT_TRUE(receiver.isComplete());
}

TEST_F(FileHeader, WhatFollowsTheSizeLineIsIgnored) {
  EXPECT_EQ(takeHeader(control(2, "FILE\nx\n7\nmore")), Header::kFile);
  EXPECT_EQ(receiver.size(), 7);
}

TEST_F(FileHeader, LargestSizeIsTaken) {
  EXPECT_EQ(takeHeader(control(2, "FILE\nx\n2147483647\n")), Header::kFile);
  EXPECT_EQ(receiver.size(), 2147483647);
}

TEST_F(FileHeader, TerminationEndsTheFilesAndClearsNameAndSize) {
  takeHeader(control(2, "FILE\nx\n1\n"));
  EXPECT_EQ(takeHeader(control(3, "TERM\nInstallation successful\n")), Header::kTerminated);
  EXPECT_EQ(trace.text(), "terminate\n");
  EXPECT_EQ(receiver.name(), "");
  EXPECT_EQ(receiver.size(), 0);
}

TEST_F(FileHeader, TerminationCountsOnAnyChannel) {
  EXPECT_EQ(takeHeader(control(2, "TERM", kDataChannel)), Header::kTerminated);
}

TEST_F(FileHeader, PureAcknowledgementIsNoHeader) {
  EXPECT_EQ(takeHeader(makeFrame(kInstallerMac, kTargetMac, 2, 4)), Header::kNone);
  EXPECT_EQ(link.sentCount(), 0u);
  EXPECT_EQ(trace.text(), "");
}

TEST_F(FileHeader, RepetitionOfTheLastFrameIsAcknowledgedAgain) {
  EXPECT_EQ(takeHeader(control(1, "OFFR\n")), Header::kNone);
  EXPECT_TRUE(trace.contains("resend ack: 1\n"));
  ASSERT_EQ(link.sentCount(), 1u);
  EXPECT_EQ(link.network->sent[0].bytes.size(), 20u);
  EXPECT_EQ(link.sent(0).header().acknowledgement, 1);
  EXPECT_TRUE(link.sent(0).header().isAck);
}

TEST_F(FileHeader, OtherNumbersAreNotAcknowledged) {
  EXPECT_EQ(takeHeader(control(5, "FILE\nx\n1\n")), Header::kNone);
  EXPECT_EQ(link.sentCount(), 0u);
  EXPECT_TRUE(trace.contains("* recv bad seq\n"));
  EXPECT_FALSE(trace.contains("resend ack"));
}

TEST_F(FileHeader, ForeignFramesAreNotAcknowledged) {
  EXPECT_EQ(takeHeader(makeFrame(kStrangerMac, kTargetMac, 1, kNoAck, "x")), Header::kNone);
  EXPECT_EQ(link.sentCount(), 0u);
}

TEST_F(FileHeader, OtherWordIsABadChannel) {
  EXPECT_EQ(faultOfHeader(control(2, "FOLD\nx\n1\n")), faultText("file open: bad channel"));
}

TEST_F(FileHeader, HeaderOnTheDataChannelIsABadChannel) {
  EXPECT_EQ(faultOfHeader(data(2, "FILE\nx\n1\n")), faultText("file open: bad channel"));
}

TEST_F(FileHeader, WithoutANameLineItHasNoName) {
  EXPECT_EQ(faultOfHeader(control(2, "FILE")), faultText("file read: bad format, no name"));
  EXPECT_EQ(faultOfHeader(control(3, "FILE\n")), faultText("file read: bad format, no name"));
  EXPECT_EQ(faultOfHeader(control(4, "FILE\nx")), faultText("file read: bad format, no name"));
  EXPECT_EQ(faultOfHeader(control(5, "FILE\n\n1\n")), faultText("file read: bad format, no name"));
}

TEST_F(FileHeader, WithoutASizeLineItHasNoSize) {
  EXPECT_EQ(faultOfHeader(control(2, "FILE\nx\n")), faultText("file read: bad format, no size"));
  EXPECT_EQ(faultOfHeader(control(3, "FILE\nx\n12")), faultText("file read: bad format, no size"));
  EXPECT_EQ(faultOfHeader(control(4, "FILE\nx\n\n")), faultText("file read: bad format, no size"));
  EXPECT_EQ(faultOfHeader(control(5, "FILE\nx\nten\n")),
            faultText("file read: bad format, no size"));
}

TEST_F(FileHeader, NegativeSizeIsBad) {
  EXPECT_EQ(faultOfHeader(control(2, "FILE\nx\n-1\n")), faultText("file read: bad size"));
}

TEST_F(FileHeader, SizeBeyond31BitsIsBad) {
  EXPECT_EQ(faultOfHeader(control(2, "FILE\nx\n2147483648\n")), faultText("file read: bad size"));
  EXPECT_EQ(faultOfHeader(control(3, "FILE\nx\n99999999999999999999999\n")),
            faultText("file read: bad size"));
}

TEST_F(FileHeader, NextFileStartsFromNothing) {
  takeHeader(control(2, "FILE\none\n3\n"));
  takeData(data(3, "abc"));
  EXPECT_EQ(takeHeader(control(4, "FILE\ntwo\n5\n")), Header::kFile);
  EXPECT_EQ(receiver.name(), "two");
  EXPECT_EQ(receiver.bytesReceived(), 0);
}

TEST_F(FileData, ChunksAreHandedOverUntilTheSizeIsReached) {
  takeHeader(control(2, "FILE\nx\n5\n"));
  EXPECT_EQ(takeData(data(3, "abc")), "abc");
  EXPECT_EQ(receiver.bytesReceived(), 3);
  EXPECT_FALSE(receiver.isComplete());
  EXPECT_EQ(takeData(data(4, "de")), "de");
  EXPECT_TRUE(receiver.isComplete());
  EXPECT_EQ(connection.acknowledgement, 4);
  EXPECT_EQ(link.sentCount(), 0u);
}

TEST_F(FileData, RepetitionBringsNothingAndIsAcknowledgedAgain) {
  takeHeader(control(2, "FILE\nx\n6\n"));
  takeData(data(3, "abc"));
  trace.clear();
  EXPECT_EQ(takeData(data(3, "abc")), "");
  EXPECT_EQ(receiver.bytesReceived(), 3);
  EXPECT_TRUE(trace.contains("resend ack: 3\n"));
  ASSERT_EQ(link.sentCount(), 1u);
  EXPECT_EQ(link.network->sent[0].bytes.size(), 20u);
  EXPECT_EQ(link.sent(0).header().acknowledgement, 3);
}

TEST_F(FileData, RepeatedHeaderIsAcknowledgedAgain) {
  takeHeader(control(2, "FILE\nx\n6\n"));
  EXPECT_EQ(takeData(control(2, "FILE\nx\n6\n")), "");
  EXPECT_TRUE(trace.contains("resend ack: 2\n"));
  EXPECT_EQ(link.sentCount(), 1u);
}

TEST_F(FileData, FrameOnAnotherChannelIsRefused) {
  takeHeader(control(2, "FILE\nx\n6\n"));
  EXPECT_EQ(faultOfData(control(3, "abc")), faultText("file read: bad channel"));
}

TEST_F(FileData, FrameWithoutDataIsRefused) {
  takeHeader(control(2, "FILE\nx\n6\n"));
  EXPECT_EQ(faultOfData(makeFrame(kInstallerMac, kTargetMac, 3, 4, {}, kDataChannel)),
            faultText("file read: no data"));
}

TEST_F(FileData, MoreThanAnnouncedIsRefused) {
  takeHeader(control(2, "FILE\nx\n2\n"));
  EXPECT_EQ(faultOfData(data(3, "abc")), faultText("file read: bad size"));
  EXPECT_EQ(receiver.bytesReceived(), 0);
}

TEST_F(FileData, RefusedFramesBringNothing) {
  takeHeader(control(2, "FILE\nx\n6\n"));
  EXPECT_EQ(takeData(data(9, "abc")), "");
  EXPECT_EQ(takeData(makeFrame(kStrangerMac, kTargetMac, 3, kNoAck, "abc", kDataChannel)), "");
  EXPECT_EQ(receiver.bytesReceived(), 0);
  EXPECT_EQ(link.sentCount(), 0u);
}

}  // namespace
}  // namespace omniset::test
