// What the services rely on, from the system's socket as well as from the fake.
#include <gmock/gmock.h>

#include <array>
#include <numeric>
#include <vector>

#include "core/error.h"
#include "core/udp_socket.h"
#include "tests/contract/raised_text.h"
#include "tests/contract/real_network.h"
#include "tests/fakes/fake_udp_socket.h"

namespace omniset::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

// A socket of the system and another one that sends to it.
class RealSockets {
 public:
  RealSockets() : local_(bindFreePort()), remote_(bindFreePort()) {}

  UdpSocket& socket() { return *local_.socket; }
  const Clock& clock() const { return clock_; }
  UdpPeer remote() const { return {kLoopback, remote_.port}; }
  void deliver(const Bytes& bytes) {
    remote_.socket->sendTo(bytes, {kLoopback, local_.port}, "sendto() failed");
  }
  Bytes receivedByRemote() {
    Bytes buffer(65'536);
    UdpPeer from;
    if (!remote_.socket->waitReadable(10 * kSecond, "select() failed")) return {};
    buffer.resize(remote_.socket->receiveFrom(buffer, from, "recvfrom() failed"));
    return buffer;
  }

 private:
  SocketLibrary library_;
  SystemClock clock_;
  BoundSocket local_;
  BoundSocket remote_;
};

class FakeSockets {
 public:
  FakeSockets() { network_->clock = &clock_; }

  UdpSocket& socket() { return socket_; }
  const Clock& clock() const { return clock_; }
  UdpPeer remote() const { return {ipv4(192, 168, 88, 7), 5001}; }
  void deliver(const Bytes& bytes) { network_->deliver(bytes, 5001); }
  Bytes receivedByRemote() { return network_->sent.back().bytes; }

 private:
  FakeClock clock_;
  std::shared_ptr<FakeNetwork> network_ = std::make_shared<FakeNetwork>();
  FakeUdpSocket socket_{network_};
};

Bytes numbered(std::size_t count) {
  Bytes bytes(count);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
  return bytes;
}

template <class Sockets>
class UdpSocketContract : public ::testing::Test {
 protected:
  bool readable(Micros timeout = 10 * kSecond) {
    return sockets_.socket().waitReadable(timeout, "select() failed");
  }
  // Receives into a buffer of `room` bytes what is delivered next.
  Bytes receive(std::size_t room = 4096) {
    if (!readable()) throw std::runtime_error("nothing came");
    Bytes buffer(room);
    buffer.resize(sockets_.socket().receiveFrom(buffer, from_, "recvfrom() failed"));
    return buffer;
  }

  std::optional<std::size_t> receiveWithin(Micros timeout, Bytes& buffer) {
    return sockets_.socket().receiveWithin(timeout, buffer, from_, "select() failed",
                                           "recvfrom() failed");
  }

  Sockets sockets_;
  UdpPeer from_;
};

using AllSockets = ::testing::Types<RealSockets, FakeSockets>;
TYPED_TEST_SUITE(UdpSocketContract, AllSockets);

TYPED_TEST(UdpSocketContract, ReceivesADatagramAndItsSender) {
  this->sockets_.deliver(numbered(1472));
  EXPECT_EQ(this->receive(), numbered(1472));
  EXPECT_EQ(this->from_.address, this->sockets_.remote().address);
  EXPECT_EQ(this->from_.port, this->sockets_.remote().port);
}

TYPED_TEST(UdpSocketContract, KeepsTheBoundsAndTheOrderOfDatagrams) {
  for (const std::size_t size : {20u, 3u, 400u}) this->sockets_.deliver(numbered(size));
  EXPECT_EQ(this->receive(), numbered(20));
  EXPECT_EQ(this->receive(), numbered(3));
  EXPECT_EQ(this->receive(), numbered(400));
}

TYPED_TEST(UdpSocketContract, ReceivesADatagramOfNoBytes) {
  this->sockets_.deliver({});
  EXPECT_EQ(this->receive(), Bytes{});
  EXPECT_EQ(this->from_.port, this->sockets_.remote().port);
}

TYPED_TEST(UdpSocketContract, CutsADatagramToTheBufferAndLosesTheRest) {
  this->sockets_.deliver(numbered(5000));
  EXPECT_EQ(this->receive(4096), numbered(4096));
  EXPECT_EQ(this->from_.address, this->sockets_.remote().address);
  EXPECT_EQ(this->from_.port, this->sockets_.remote().port);
  EXPECT_FALSE(this->readable(kMillisecond));
}

TYPED_TEST(UdpSocketContract, ADatagramOfTheBuffersSizeIsWhole) {
  this->sockets_.deliver(numbered(64));
  EXPECT_EQ(this->receive(64), numbered(64));
}

TYPED_TEST(UdpSocketContract, AfterACutDatagramTheNextIsWhole) {
  this->sockets_.deliver(numbered(65));
  this->sockets_.deliver(numbered(10));
  EXPECT_EQ(this->receive(64), numbered(64));
  EXPECT_EQ(this->receive(64), numbered(10));
}

TYPED_TEST(UdpSocketContract, WritesNothingBehindWhatItReceived) {
  this->sockets_.deliver(numbered(4));
  ASSERT_TRUE(this->readable());
  std::array<std::uint8_t, 8> buffer{9, 9, 9, 9, 9, 9, 9, 9};
  this->sockets_.socket().receiveFrom(buffer, this->from_, "recvfrom() failed");
  EXPECT_THAT(buffer, ::testing::ElementsAre(1, 2, 3, 4, 9, 9, 9, 9));
}

TYPED_TEST(UdpSocketContract, SendsToWhomItIsTold) {
  EXPECT_EQ(this->sockets_.socket().sendTo(numbered(1472), this->sockets_.remote(), "sendto()"),
            1472u);
  EXPECT_EQ(this->sockets_.receivedByRemote(), numbered(1472));
}

TYPED_TEST(UdpSocketContract, SendsADatagramOfNoBytes) {
  EXPECT_EQ(this->sockets_.socket().sendTo({}, this->sockets_.remote(), "sendto()"), 0u);
  EXPECT_EQ(this->sockets_.receivedByRemote(), Bytes{});
}

TYPED_TEST(UdpSocketContract, WaitRunsOutWhenNothingComes) {
  const Micros before = this->sockets_.clock().now();
  EXPECT_FALSE(this->readable(50 * kMillisecond));
  EXPECT_GE(this->sockets_.clock().now() - before, 30 * kMillisecond);
}

TYPED_TEST(UdpSocketContract, WaitCountsWholeSecondsAndTheirParts) {
  const Micros before = this->sockets_.clock().now();
  EXPECT_FALSE(this->readable(1'250'000));
  const Micros waited = this->sockets_.clock().now() - before;
  EXPECT_GE(waited, 1'200'000);
  EXPECT_LT(waited, 20 * kSecond);
}

TYPED_TEST(UdpSocketContract, WaitEndsAtOnceWhenADatagramIsThere) {
  this->sockets_.deliver(numbered(1));
  const Micros before = this->sockets_.clock().now();
  EXPECT_TRUE(this->readable(60 * kSecond));
  EXPECT_LT(this->sockets_.clock().now() - before, 20 * kSecond);
}

TYPED_TEST(UdpSocketContract, WaitWithoutLimitEndsWhenADatagramIsThere) {
  this->sockets_.deliver(numbered(1));
  EXPECT_TRUE(this->readable(0));
}

TYPED_TEST(UdpSocketContract, ReceivesWithinATimeWhatIsThere) {
  this->sockets_.deliver(numbered(300));
  this->sockets_.deliver({});
  Bytes buffer(256);
  EXPECT_EQ(this->receiveWithin(60 * kSecond, buffer), 256u);
  EXPECT_EQ(buffer[255], numbered(300)[255]);
  EXPECT_EQ(this->from_.port, this->sockets_.remote().port);
  EXPECT_EQ(this->receiveWithin(60 * kSecond, buffer), 0u);
}

TYPED_TEST(UdpSocketContract, ReceivesNothingWhenNothingComesWithinTheTime) {
  Bytes buffer(256);
  for (const Micros limit : {1'250'000, 50'000}) {
    const Micros before = this->sockets_.clock().now();
    EXPECT_EQ(this->receiveWithin(limit, buffer), std::nullopt);
    const Micros waited = this->sockets_.clock().now() - before;
    EXPECT_GE(waited, limit - 20 * kMillisecond);
    EXPECT_LT(waited, 20 * kSecond);
  }
  this->sockets_.deliver(numbered(7));
  EXPECT_EQ(this->receiveWithin(10 * kSecond, buffer), 7u);
}

TYPED_TEST(UdpSocketContract, WaitTakesNoDatagram) {
  this->sockets_.deliver(numbered(7));
  EXPECT_TRUE(this->readable());
  EXPECT_TRUE(this->readable());
  EXPECT_EQ(this->receive(), numbered(7));
}

}  // namespace
}  // namespace omniset::test
