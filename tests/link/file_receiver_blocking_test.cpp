// The receiver's blocking forms: whole files from an endpoint.
#include <gtest/gtest.h>

#include "link/file_sender.h"
#include "tests/fakes/temp_folder.h"
#include "tests/link/receiver_fixture.h"
#include "tests/link/timed_socket.h"

namespace omniset::test {
namespace {

constexpr Micros kLimit = 1000 * kSecond;

struct BlockingReceiver : ::testing::Test {
  std::string receiveData() {
    std::string content;
    receiver.receiveData(
        [&](std::span<const std::uint8_t> bytes) { content.append(bytes.begin(), bytes.end()); });
    return content;
  }
  std::vector<int> acknowledgementsSent() const {
    std::vector<int> numbers;
    for (std::size_t i = 0; i < link.sentCount(); ++i) {
      numbers.push_back(link.sent(i).header().acknowledgement);
    }
    return numbers;
  }

  LinkFixture link;
  LinkConnection connection = targetConnection();
  FileReceiver receiver{link.endpoint, connection};
  CapturedTrace trace;
};

TEST_F(BlockingReceiver, HeaderIsAwaitedForAThousandSecondsAtATime) {
  EXPECT_THROW(receiver.receiveHeader(link.clock), Error);
  EXPECT_EQ(link.network->waits, std::vector<Micros>{kLimit});
}

TEST_F(BlockingReceiver, NoHeaderInTimeIsRaised) {
  try {
    receiver.receiveHeader(link.clock);
    FAIL() << "no error";
  } catch (const Error& e) {
    EXPECT_EQ(e.what(), faultText("file open: no file"));
  }
}

TEST_F(BlockingReceiver, HeaderIsAcknowledged) {
  link.deliver(control(2, "FILE\nx\n3\n"));
  EXPECT_TRUE(receiver.receiveHeader(link.clock));
  EXPECT_EQ(receiver.name(), "x");
  EXPECT_EQ(acknowledgementsSent(), std::vector<int>{2});
}

TEST_F(BlockingReceiver, TerminationIsAcknowledgedAndEndsTheFiles) {
  link.deliver(control(2, "TERM\nInstallation successful\n"));
  EXPECT_FALSE(receiver.receiveHeader(link.clock));
  EXPECT_EQ(acknowledgementsSent(), std::vector<int>{2});
  EXPECT_EQ(trace.text(), "terminate\n");
}

TEST_F(BlockingReceiver, RepetitionsAndStrangersBeforeTheHeaderAreNoHindrance) {
  link.deliver(control(1, "OFFR\n"));
  link.deliver(makeFrame(kStrangerMac, kTargetMac, 2, kNoAck, "FILE\ny\n1\n"));
  link.deliver(makeFrame(kInstallerMac, kTargetMac, 2, 4));
  link.network->deliver(control(2, "FILE\ny\n1\n").datagram(), 5001);
  link.network->deliver(std::vector<std::uint8_t>(19));
  link.deliver(control(2, "FILE\nx\n3\n"));
  EXPECT_TRUE(receiver.receiveHeader(link.clock));
  EXPECT_EQ(receiver.name(), "x");
  EXPECT_EQ(acknowledgementsSent(), (std::vector<int>{1, 2}));
}

TEST_F(BlockingReceiver, EachChunkIsStoredThenAcknowledged) {
  link.deliver(control(2, "FILE\nx\n5\n"));
  link.deliver(data(3, "abc"));
  link.deliver(data(4, "de"));
  receiver.receiveHeader(link.clock);
  std::vector<std::size_t> sentBeforeChunk;
  receiver.receiveData(
      [&](std::span<const std::uint8_t>) { sentBeforeChunk.push_back(link.sentCount()); });
  EXPECT_EQ(sentBeforeChunk, (std::vector<std::size_t>{1, 2}));
  EXPECT_EQ(acknowledgementsSent(), (std::vector<int>{2, 3, 4}));
}

TEST_F(BlockingReceiver, RepeatedDataIsNotAppendedTwice) {
  link.deliver(control(2, "FILE\nx\n5\n"));
  link.deliver(control(2, "FILE\nx\n5\n"));
  link.deliver(data(3, "abc"));
  link.deliver(data(3, "abc"));
  link.deliver(data(4, "de"));
  receiver.receiveHeader(link.clock);
  EXPECT_EQ(receiveData(), "abcde");
  EXPECT_TRUE(trace.contains("resend ack: 2\n"));
  EXPECT_TRUE(trace.contains("resend ack: 3\n"));
  EXPECT_EQ(acknowledgementsSent(), (std::vector<int>{2, 2, 3, 3, 4}));
}

TEST_F(BlockingReceiver, EmptyFileWaitsForNoData) {
  link.deliver(control(2, "FILE\nx\n0\n"));
  receiver.receiveHeader(link.clock);
  EXPECT_EQ(receiveData(), "");
  EXPECT_EQ(link.network->waits.size(), 1u);
}

TEST_F(BlockingReceiver, DataIsAwaitedWithoutLimit) {
  link.deliver(control(2, "FILE\nx\n1\n"));
  link.deliver(data(3, "a"));
  receiver.receiveHeader(link.clock);
  receiveData();
  EXPECT_EQ(link.network->waits, (std::vector<Micros>{kLimit, 0}));
}

TEST_F(BlockingReceiver, SendersFramesMakeTheFileAgain) {
  const TempFolder folder;
  std::string content(3000, '\0');
  for (std::size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 7);
  LinkFixture sending;
  LinkConnection toTarget = boundConnection(2, 3);
  FileSender sender(folder.write("system-2.9.bdl", content), sending.endpoint, toTarget);
  sender.next(false);
  do {
    ++toTarget.sequence;
  } while (sender.next(true) != 0);
  for (const auto& datagram : sending.network->sent) link.network->deliver(datagram.bytes);

  ASSERT_TRUE(receiver.receiveHeader(link.clock));
  EXPECT_EQ(receiver.name(), "system-2.9.bdl");
  EXPECT_EQ(receiveData(), content);
}

// The overall limit is looked at after each wait, which itself lasts as long again.
TEST(BlockingReceiverTimes, TrafficWithoutAHeaderEndsAtTheFirstFrameAfterTheLimit) {
  const SilentTrace silent;
  const auto network = std::make_shared<TimedNetwork>();
  const Micros start = network->clock.now();
  BroadcastEndpoint endpoint(kTargetMac, nullptr, kInstallPort,
                             std::make_unique<TimedSocket>(network));
  LinkConnection connection = targetConnection();
  FileReceiver receiver(endpoint, connection);
  network->arriveAt(start + 600 * kSecond, control(1, "OFFR\n").datagram());
  network->arriveAt(start + 1100 * kSecond, control(1, "OFFR\n").datagram());
  network->arriveAt(start + 1200 * kSecond, control(2, "FILE\nx\n1\n").datagram());
  EXPECT_THROW(receiver.receiveHeader(network->clock), Error);
  EXPECT_EQ(network->clock.now(), start + 1100 * kSecond);
}

}  // namespace
}  // namespace omniset::test
