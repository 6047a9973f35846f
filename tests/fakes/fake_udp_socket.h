// A socket without a network. What it is told and what a test wants to feed it lie in a log that
// the test shares, because the code under test owns the socket.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "core/udp_socket.h"
#include "fake_clock.h"

namespace omniset::test {

struct FakeNetwork {
  struct Datagram {
    std::vector<std::uint8_t> bytes;
    UdpPeer peer;
  };

  std::vector<std::string> calls;  // "open", "allowBroadcast", "allowAddressReuse", "bind 5000",
                                   // in order
  std::deque<Datagram> toReceive;
  std::vector<Datagram> sent;
  std::vector<Micros> waits;        // the timeouts of the waits
  std::string failing;              // the operation of this name raises SocketExc
  std::size_t mostSent = SIZE_MAX;  // bytes of a datagram that go out
  // Moved by the timeout of a wait that finds nothing to receive; may be null.
  FakeClock* clock = nullptr;

  void deliver(std::span<const std::uint8_t> bytes, std::uint16_t fromPort = 5000);
};

class FakeUdpSocket : public UdpSocket {
 public:
  explicit FakeUdpSocket(std::shared_ptr<FakeNetwork> network) : network_(std::move(network)) {}

  void open(const char* failure) override;
  void allowBroadcast(const char* failure) override;
  void allowAddressReuse(const char* failure) override;
  void bind(std::uint16_t port, const char* failure) override;
  std::size_t sendTo(std::span<const std::uint8_t> bytes, const UdpPeer& to,
                     const char* failure) override;
  bool waitReadable(Micros timeout, const char* failure) override;
  std::size_t receiveFrom(std::span<std::uint8_t> buffer, UdpPeer& from,
                          const char* failure) override;

 private:
  void failIf(const std::string& operation, const char* failure) const;

  std::shared_ptr<FakeNetwork> network_;
};

}  // namespace omniset::test
