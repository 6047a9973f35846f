#include "cli/stoppable_socket.h"

#include <gtest/gtest.h>

#include <array>

#include "core/error.h"
#include "tests/fakes/fake_udp_socket.h"

namespace omniset::test {

namespace {

class StoppableSocketTest : public testing::Test {
 protected:
  Event stopEvent{true, false};
  std::shared_ptr<FakeNetwork> network = std::make_shared<FakeNetwork>();
  StoppableSocket socket{std::make_unique<FakeUdpSocket>(network), stopEvent};
};

}  // namespace

TEST_F(StoppableSocketTest, PassesEverythingOn) {
  const std::array<std::uint8_t, 3> bytes{1, 2, 3};
  socket.open("");
  socket.allowAddressReuse("");
  socket.allowBroadcast("");
  socket.bind(67, "");
  EXPECT_EQ(network->calls,
            (std::vector<std::string>{"open", "allowAddressReuse", "allowBroadcast", "bind 67"}));
  EXPECT_EQ(socket.sendTo(bytes, {1, 2}, ""), 3u);
  EXPECT_EQ(network->sent.size(), 1u);
  EXPECT_FALSE(socket.waitReadable(kSecond, ""));
  EXPECT_EQ(network->waits, std::vector<Micros>{kSecond});
  network->deliver(bytes, 1234);
  EXPECT_TRUE(socket.waitReadable(kSecond, ""));
  std::array<std::uint8_t, 8> buffer{};
  UdpPeer from;
  EXPECT_EQ(socket.receiveFrom(buffer, from, ""), 3u);
  EXPECT_EQ(from.port, 1234);
  network->deliver(bytes, 1235);
  EXPECT_EQ(socket.receiveWithin(kSecond, buffer, from, "", ""), 3u);
  EXPECT_EQ(from.port, 1235);
  EXPECT_EQ(socket.receiveWithin(kSecond, buffer, from, "", ""), std::nullopt);
}

TEST_F(StoppableSocketTest, FailuresKeepTheirTexts) {
  network->failing = "bind";
  try {
    socket.bind(69, "bind failed");
    FAIL();
  } catch (const SocketExc& e) {
    EXPECT_TRUE(std::string(e.what()).starts_with("bind failed"));
  }
}

TEST_F(StoppableSocketTest, NoWaitBeginsOnceItIsToStop) {
  network->deliver(std::array<std::uint8_t, 1>{1});
  stopEvent.set();
  EXPECT_THROW(socket.waitReadable(kSecond, ""), StopRequested);
  std::array<std::uint8_t, 8> buffer{};
  UdpPeer from;
  EXPECT_THROW(socket.receiveWithin(kSecond, buffer, from, "", ""), StopRequested);
  EXPECT_TRUE(network->waits.empty());
}

}  // namespace omniset::test
