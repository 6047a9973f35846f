// A socket whose datagrams arrive at given times of a fake clock, which its waits move.
#pragma once

#include <algorithm>
#include <deque>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "core/ipv4_address.h"
#include "core/udp_socket.h"
#include "tests/fakes/fake_clock.h"

namespace omniset::test {

struct TimedNetwork {
  FakeClock clock;
  std::deque<std::pair<Micros, std::vector<std::uint8_t>>> arrivals;  // by time
  std::vector<Micros> sentAt;

  void arriveAt(Micros time, std::span<const std::uint8_t> bytes) {
    arrivals.emplace_back(time, std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
  }
};

class TimedSocket : public UdpSocket {
 public:
  explicit TimedSocket(std::shared_ptr<TimedNetwork> network) : network_(std::move(network)) {}

  void open(const char*) override {}
  void allowBroadcast(const char*) override {}
  void allowAddressReuse(const char*) override {}
  void bind(std::uint16_t, const char*) override {}

  std::size_t sendTo(std::span<const std::uint8_t> bytes, const UdpPeer&, const char*) override {
    network_->sentAt.push_back(network_->clock.now());
    return bytes.size();
  }

  bool waitReadable(Micros timeout, const char*) override {
    const Micros end = network_->clock.now() + timeout;
    const bool comes = !network_->arrivals.empty() && network_->arrivals.front().first <= end;
    const Micros until = comes ? network_->arrivals.front().first : end;
    network_->clock.advance(std::max<Micros>(until - network_->clock.now(), 0));
    return comes;
  }

  std::size_t receiveFrom(std::span<std::uint8_t> buffer, UdpPeer& from, const char*) override {
    const auto bytes = std::move(network_->arrivals.front().second);
    network_->arrivals.pop_front();
    const std::size_t length = std::min(buffer.size(), bytes.size());
    std::copy_n(bytes.begin(), length, buffer.begin());
    from = {ipv4(192, 168, 88, 7), 5000};
    return length;
  }

 private:
  std::shared_ptr<TimedNetwork> network_;
};

}  // namespace omniset::test
