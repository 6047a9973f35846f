#include "link/broadcast_endpoint.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/error.h"
#include "core/ipv4_address.h"
#include "core/os_error.h"
#include "tests/fakes/captured_trace.h"
#include "tests/link/link_fixture.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr long kSomeCode = 5;

struct Step {
  const char* operation;
  const char* text;
  std::vector<std::string> callsUntilThen;
};

class EndpointOpening : public ::testing::TestWithParam<Step> {};

TEST_P(EndpointOpening, FailingStepRaisesItsTextAndEndsThere) {
  const auto network = std::make_shared<FakeNetwork>();
  network->failing = GetParam().operation;
  auto socket = std::make_unique<FakeUdpSocket>(network);
  std::string message;
  setLastOsError(kSomeCode);
  try {
    const BroadcastEndpoint endpoint(kInstallerMac, nullptr, 5000, std::move(socket));
  } catch (const SocketExc& e) {
    message = e.what();
  }
  EXPECT_EQ(message, errorText(GetParam().text, kSomeCode));
  EXPECT_EQ(network->calls, GetParam().callsUntilThen);
}

INSTANTIATE_TEST_SUITE_P(
    Steps, EndpointOpening,
    ::testing::Values(
        Step{"open", "socket() failed", {"open"}},
        Step{"allowBroadcast", "setsockopt() SO_BROADCAST failed", {"open", "allowBroadcast"}},
        Step{"bind", "bind() failed", {"open", "allowBroadcast", "bind 5000"}}),
    [](const auto& step) { return std::string(step.param.operation); });

TEST(BroadcastEndpoint, OpensAllowsBroadcastsAndBindsInThisOrder) {
  const LinkFixture link;
  EXPECT_THAT(link.network->calls, ElementsAre("open", "allowBroadcast", "bind 5000"));
}

TEST(BroadcastEndpoint, KeepsTheLocalAddress) {
  const LinkFixture link;
  EXPECT_EQ(link.endpoint.localAddress(), kInstallerMac);
}

TEST(BroadcastEndpoint, WritesItsTraceNameBeforeTheSocketIsOpened) {
  const CapturedTrace trace;
  const auto network = std::make_shared<FakeNetwork>();
  network->failing = "open";
  EXPECT_THROW(
      BroadcastEndpoint(kInstallerMac, "link", 5000, std::make_unique<FakeUdpSocket>(network)),
      SocketExc);
  EXPECT_EQ(trace.text(), "socket(): link\n");
}

TEST(BroadcastEndpoint, WritesNoTraceWithoutAName) {
  const CapturedTrace trace;
  const LinkFixture link;
  EXPECT_EQ(trace.text(), "");
}

TEST(BroadcastEndpoint, SendsToTheLimitedBroadcastAddressOnItsOwnPort) {
  const auto network = std::make_shared<FakeNetwork>();
  BroadcastEndpoint endpoint(kInstallerMac, nullptr, 6001,
                             std::make_unique<FakeUdpSocket>(network));
  const std::vector<std::uint8_t> bytes{1, 2, 3};
  EXPECT_EQ(endpoint.sendDatagram(bytes), 3u);
  ASSERT_EQ(network->sent.size(), 1u);
  EXPECT_EQ(network->sent[0].bytes, bytes);
  EXPECT_EQ(network->sent[0].peer.address, ipv4(255, 255, 255, 255));
  EXPECT_EQ(network->sent[0].peer.port, 6001);
}

// The text of the SocketExc that `call` raises while the operation fails.
template <class Call>
std::string failureOf(FakeNetwork& network, const char* operation, Call call) {
  network.failing = operation;
  setLastOsError(kSomeCode);
  try {
    call();
  } catch (const SocketExc& e) {
    return e.what();
  }
  return "nothing was raised";
}

TEST(BroadcastEndpoint, SendFailureRaisesSendto) {
  LinkFixture link;
  const std::vector<std::uint8_t> bytes{1};
  EXPECT_EQ(failureOf(*link.network, "sendTo", [&] { link.endpoint.sendDatagram(bytes); }),
            errorText("sendto() failed", kSomeCode));
}

TEST(BroadcastEndpoint, WaitFailureRaisesSelect) {
  LinkFixture link;
  LinkFrame buffer;
  EXPECT_EQ(failureOf(*link.network, "waitReadable",
                      [&] { link.endpoint.waitDatagram(buffer.bytes, 1); }),
            errorText("select() failed", kSomeCode));
}

TEST(BroadcastEndpoint, ReceiveFailureRaisesRecvfrom) {
  LinkFixture link;
  LinkFrame buffer;
  link.deliver(buffer);
  EXPECT_EQ(
      failureOf(*link.network, "receiveFrom", [&] { link.endpoint.waitDatagram(buffer.bytes, 1); }),
      errorText("recvfrom() failed", kSomeCode));
}

TEST(BroadcastEndpoint, HandsTheTimeoutOnAndZeroMeansWithoutLimit) {
  LinkFixture link;
  LinkFrame buffer;
  link.endpoint.waitDatagram(buffer.bytes, 2'500'000);
  link.endpoint.waitDatagram(buffer.bytes, 0);
  EXPECT_THAT(link.network->waits, ElementsAre(2'500'000, 0));
}

TEST(BroadcastEndpoint, ExpiredWaitReturnsMinusOne) {
  LinkFixture link;
  LinkFrame buffer;
  EXPECT_EQ(link.endpoint.waitDatagram(buffer.bytes, kSecond), -1);
}

TEST(BroadcastEndpoint, ReturnsTheLengthAndTheBytesOfADatagram) {
  LinkFixture link;
  const std::vector<std::uint8_t> bytes{9, 8, 7};
  link.network->deliver(bytes);
  LinkFrame buffer;
  ASSERT_EQ(link.endpoint.waitDatagram(buffer.bytes, kSecond), 3);
  EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), buffer.bytes.begin()));
}

TEST(BroadcastEndpoint, DatagramFromAForeignPortIsReadAndDropped) {
  LinkFixture link;
  const std::vector<std::uint8_t> bytes{1, 2, 3};
  link.network->deliver(bytes, 5001);
  link.network->deliver(bytes, 5000);
  LinkFrame buffer;
  EXPECT_EQ(link.endpoint.waitDatagram(buffer.bytes, kSecond), -1);
  EXPECT_EQ(link.network->toReceive.size(), 1u);
  EXPECT_EQ(link.endpoint.waitDatagram(buffer.bytes, kSecond), 3);
}

TEST(BroadcastEndpoint, RemembersTheLastSenderWhateverItsPort) {
  LinkFixture link;
  const std::vector<std::uint8_t> bytes{1};
  link.network->deliver(bytes, 5001);
  LinkFrame buffer;
  link.endpoint.waitDatagram(buffer.bytes, kSecond);
  EXPECT_EQ(link.endpoint.lastSender().address, ipv4(192, 168, 88, 7));
  EXPECT_EQ(link.endpoint.lastSender().port, 5001);
}

TEST(BroadcastEndpoint, ExpiredWaitLeavesTheLastSender) {
  LinkFixture link;
  const std::vector<std::uint8_t> bytes{1};
  link.network->deliver(bytes);
  LinkFrame buffer;
  link.endpoint.waitDatagram(buffer.bytes, kSecond);
  link.endpoint.waitDatagram(buffer.bytes, kSecond);
  EXPECT_EQ(link.endpoint.lastSender().port, 5000);
}

TEST(BroadcastEndpoint, ReceivesAtMost4096Bytes) {
  LinkFixture link;
  link.network->deliver(std::vector<std::uint8_t>(5000, 0x55));
  std::vector<std::uint8_t> buffer(5000);
  EXPECT_EQ(link.endpoint.waitDatagram(buffer, kSecond), 4096);
  EXPECT_EQ(buffer[4095], 0x55);
  EXPECT_EQ(buffer[4096], 0);
}

TEST(BroadcastEndpoint, NeverReceivesMoreThanTheBufferHolds) {
  LinkFixture link;
  link.network->deliver(std::vector<std::uint8_t>(100, 0x55));
  std::vector<std::uint8_t> buffer(10);
  EXPECT_EQ(link.endpoint.waitDatagram(buffer, kSecond), 10);
}

TEST(BroadcastEndpoint, SendsNothingByItself) {
  const LinkFixture link;
  EXPECT_THAT(link.network->sent, IsEmpty());
}

}  // namespace
}  // namespace omniset::test
