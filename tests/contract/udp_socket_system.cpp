// What only the system's sockets can show.
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <string>
#include <thread>

#include "core/error.h"
#include "tests/contract/raised_text.h"
#include "tests/contract/real_network.h"
#include "tests/contract/test_adapter.h"

namespace omniset::test {
namespace {

constexpr std::array<std::uint8_t, 3> kBytes{1, 2, 3};

class SystemUdpSocket : public ::testing::Test {
 protected:
  // The port that a datagram waiting at `socket` came from, which is received.
  static std::uint16_t receivedFrom(UdpSocket& socket) {
    std::array<std::uint8_t, 100> buffer{};
    UdpPeer from;
    socket.receiveFrom(buffer, from, "recvfrom() failed");
    return from.port;
  }

  SocketLibrary library_;
};

TEST_F(SystemUdpSocket, PortTakenRaisesInTheCallersWords) {
  const BoundSocket first = bindFreePort();
  const auto second = makeUdpSocket();
  second->open("socket() failed");
  const std::string text =
      raisedText<SocketExc>([&] { second->bind(first.port, "bind() failed"); });
  EXPECT_TRUE(text.starts_with("bind() failed: ")) << text;
  EXPECT_NE(text.find("Error code: "), std::string::npos) << text;
  EXPECT_EQ(text.find("Error code: 0"), std::string::npos) << text;
}

TEST_F(SystemUdpSocket, TwoThatAllowItShareAPort) {
  const auto first = makeUdpSocket();
  const auto second = makeUdpSocket();
  const std::uint16_t port = bindFreePort().port;
  for (const auto& socket : {first.get(), second.get()}) {
    socket->open("socket() failed");
    socket->allowAddressReuse("setsockopt() SO_REUSEADDR failed");
    EXPECT_NO_THROW(socket->bind(port, "bind() failed"));
  }
}

TEST_F(SystemUdpSocket, LastErrorOfATakenPortIsTheOneInTheMessage) {
  const BoundSocket first = bindFreePort();
  const auto second = makeUdpSocket();
  second->open("socket() failed");
  try {
    second->bind(first.port, "bind() failed");
    FAIL() << "a port was bound twice";
  } catch (const SocketExc& e) {
    const long code = e.lastError();
    EXPECT_TRUE(std::string(e.what()).ends_with("Error code: " + std::to_string(code))) << code;
  }
}

TEST_F(SystemUdpSocket, PortIsFreeAgainOnceTheSocketIsDestroyed) {
  BoundSocket first = bindFreePort();
  first.socket.reset();
  const auto second = makeUdpSocket();
  second->open("socket() failed");
  EXPECT_NO_THROW(second->bind(first.port, "bind() failed"));
}

TEST_F(SystemUdpSocket, UsedBeforeItIsOpenRaises) {
  const auto socket = makeUdpSocket();
  std::array<std::uint8_t, 4> buffer{};
  UdpPeer from;
  const auto raises = [](const std::string& start, auto action) {
    const std::string text = raisedText<SocketExc>(action);
    EXPECT_TRUE(text.starts_with(start + ": ")) << text;
  };
  raises("option", [&] { socket->allowBroadcast("option"); });
  raises("reuse", [&] { socket->allowAddressReuse("reuse"); });
  raises("bind", [&] { socket->bind(0, "bind"); });
  raises("send", [&] { socket->sendTo(kBytes, {kLoopback, 9}, "send"); });
  raises("receive", [&] { socket->receiveFrom(buffer, from, "receive"); });
}

TEST_F(SystemUdpSocket, BroadcastThatWasNotAllowedRaises) {
  const BoundSocket bound = bindFreePort();
  const std::string text = raisedText<SocketExc>([&] {
    bound.socket->sendTo(kBytes, {kBroadcastAddress, bound.port}, "sendto() failed");
  });
  EXPECT_TRUE(text.starts_with("sendto() failed: ")) << text;
}

TEST_F(SystemUdpSocket, DatagramTooLongForTheProtocolRaises) {
  const BoundSocket bound = bindFreePort();
  const std::vector<std::uint8_t> tooLong(65'508);
  const std::string text = raisedText<SocketExc>([&] {
    bound.socket->sendTo(tooLong, {kLoopback, bound.port}, "sendto() failed");
  });
  EXPECT_TRUE(text.starts_with("sendto() failed: ")) << text;
}

TEST_F(SystemUdpSocket, WaitWithoutLimitLastsUntilADatagramComes) {
  const BoundSocket bound = bindFreePort();
  const BoundSocket sender = bindFreePort();
  bool sent = false;
  std::thread later([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    sent = true;
    sender.socket->sendTo(kBytes, {kLoopback, bound.port}, "sendto() failed");
  });
  const bool readable = bound.socket->waitReadable(0, "select() failed");
  later.join();
  EXPECT_TRUE(readable);
  EXPECT_TRUE(sent);
  EXPECT_EQ(receivedFrom(*bound.socket), sender.port);
}

// The news that nobody listens there may arrive as a datagram of no bytes, but as no failure.
// As many targets announce themselves in the same moment when a rack is switched on.
TEST_F(SystemUdpSocket, HoldsADatagramOfEachOfFourHundredPeers) {
  constexpr int kPeers = 400;
  const BoundSocket receiver = bindFreePort();
  const BoundSocket sender = bindFreePort();
  const std::array<std::uint8_t, 80> announcement{};
  for (int i = 0; i < kPeers; ++i) {
    sender.socket->sendTo(announcement, {kLoopback, receiver.port}, "sendto() failed");
  }
  int received = 0;
  while (receiver.socket->waitReadable(100 * kMillisecond, "select() failed")) {
    receivedFrom(*receiver.socket);
    ++received;
  }
  EXPECT_EQ(received, kPeers);
}

TEST_F(SystemUdpSocket, SendingToAClosedPortDoesNoHarm) {
  const BoundSocket bound = bindFreePort();
  BoundSocket closed = bindFreePort();
  closed.socket.reset();
  for (int i = 0; i < 3; ++i) {
    bound.socket->sendTo(kBytes, {kLoopback, closed.port}, "sendto() failed");
  }
  const BoundSocket sender = bindFreePort();
  sender.socket->sendTo(kBytes, {kLoopback, bound.port}, "sendto() failed");
  std::uint16_t from = 0;
  for (int i = 0; i < 10 && from != sender.port; ++i) {
    ASSERT_TRUE(bound.socket->waitReadable(10 * kSecond, "select() failed"));
    from = receivedFrom(*bound.socket);
  }
  EXPECT_EQ(from, sender.port);
}

TEST_F(SystemUdpSocket, BroadcastReachesAllWhoListenOnItsPort) {
  const auto adapter = testAdapter();
  if (!adapter) GTEST_SKIP() << "needs a network with one adapter, OMNISET_TEST_ADAPTER=NAME=MAC";
  const BoundSocket listener = bindFreePort(adapter->name);
  const BoundSocket sender = bindFreePort(adapter->name);
  const UdpPeer everybody{kBroadcastAddress, listener.port};
  sender.socket->allowBroadcast("setsockopt() SO_BROADCAST failed");
  EXPECT_EQ(sender.socket->sendTo(kBytes, everybody, "sendto() failed"), 3u);
  ASSERT_TRUE(listener.socket->waitReadable(10 * kSecond, "select() failed"));
  EXPECT_EQ(receivedFrom(*listener.socket), sender.port);
}

TEST_F(SystemUdpSocket, TheLibraryMayBeStartedAgain) {
  const SocketLibrary again;
  EXPECT_NE(bindFreePort().port, 0);
}

}  // namespace
}  // namespace omniset::test
