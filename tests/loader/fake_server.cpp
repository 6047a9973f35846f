#include "fake_server.h"

#include <algorithm>

namespace omniset::loader::test {
namespace {

constexpr std::uint32_t kClientAddress = 0x1458A8C0;
// How long the PC is busy between two looks.
constexpr Micros kLook = 10 * kMillisecond;
constexpr Micros kTick = 54'925;
constexpr std::uint16_t kFirstServerPort = 40'000;
constexpr std::uint16_t kFirstPcPort = 0xC000;

}  // namespace

// Sends to the PC from the transfer's port; receiving is the server's own work.
class FakeServer::Socket : public UdpSocket {
 public:
  explicit Socket(FakeServer& server) : server_(server) {}

  void open(const char*) override {}
  void allowBroadcast(const char*) override {}
  void allowAddressReuse(const char*) override {}
  void bind(std::uint16_t port, const char*) override { port_ = port; }
  std::size_t sendTo(std::span<const std::uint8_t> bytes, const UdpPeer& to, const char*) override {
    server_.carry({port_, to.port, {bytes.begin(), bytes.end()}});
    return bytes.size();
  }
  bool waitReadable(Micros, const char*) override { return false; }
  std::size_t receiveFrom(std::span<std::uint8_t>, UdpPeer&, const char*) override { return 0; }

 private:
  FakeServer& server_;
  std::uint16_t port_ = 0;
};

FakeServer::FakeServer()
    : services_{[this] { return std::make_unique<Socket>(*this); },
                [this] { return ++port_; },
                [this](std::string_view name) { requested.emplace_back(name); },
                {}},
      listening_(std::make_unique<Socket>(*this)) {}

void FakeServer::serve(std::vector<Bytes> images) {
  toServer_.clear();
  toPc_.clear();
  requests_.clear();
  sentByPc.clear();
  requested.clear();
  images_ = std::move(images);
  served_ = 0;
  port_ = kFirstServerPort;
  startTransfer();
}

void FakeServer::startTransfer() {
  transfer_.reset();
  silenceAt_ = kNever;
  if (served_ == images_.size()) return;
  const Bytes& image = images_[served_];
  transfer_ = std::make_unique<TftpTransfer>(*listening_, BootImage{image.data(), image.size()},
                                             kClientAddress, services_);
  silenceAt_ = now_ + kSecond;
}

void FakeServer::carry(Datagram datagram) {
  if (!wire) {
    arrive({0, std::move(datagram)});
    return;
  }
  for (Arrival& arrival : wire(datagram)) arrive(std::move(arrival));
}

void FakeServer::arrive(Arrival arrival) {
  auto& to = arrival.datagram.to >= kFirstPcPort ? toPc_ : toServer_;
  to.emplace(now_ + arrival.delay, std::move(arrival.datagram));
}

void FakeServer::send(Datagram datagram) {
  sentByPc.push_back({ticks(), datagram});
  carry(std::move(datagram));
}

std::optional<Datagram> FakeServer::receive(std::uint16_t port) {
  runUntil(now_);
  while (!toPc_.empty() && toPc_.begin()->first <= now_) {
    Datagram datagram = std::move(toPc_.extract(toPc_.begin()).mapped());
    if (datagram.to == port) return datagram;
  }
  runUntil(now_ + kLook);
  return std::nullopt;
}

std::uint16_t FakeServer::ticks() const {
  return static_cast<std::uint16_t>(now_ / kTick);
}

void FakeServer::runUntil(Micros end) {
  for (;;) {
    const Micros arrival = toServer_.empty() ? kNever : toServer_.begin()->first;
    const Micros next = std::min(arrival, silenceAt_);
    if (next > end) break;
    now_ = std::max(now_, next);
    if (arrival <= silenceAt_) {
      hear(toServer_.extract(toServer_.begin()).mapped());
    } else {
      silenceAt_ += kSecond;
      transfer_->silence();
      goOn();
    }
  }
  now_ = std::max(now_, end);
}

// Requests wait at their port while an image is transferred.
void FakeServer::hear(const Datagram& datagram) {
  using State = TftpTransfer::State;
  if (datagram.to == kTftpPort) {
    requests_.push_back(datagram);
  } else if (transfer_ && transfer_->state() == State::kTransferring && datagram.to == port_) {
    feed(datagram);
  }
  while (transfer_ && transfer_->state() == State::kAwaitingRequest && !requests_.empty()) {
    const Datagram request = std::move(requests_.front());
    requests_.pop_front();
    feed(request);
  }
}

void FakeServer::feed(const Datagram& datagram) {
  silenceAt_ = now_ + kSecond;
  transfer_->received(datagram.bytes, {kClientAddress, datagram.from});
  goOn();
}

void FakeServer::goOn() {
  switch (transfer_->state()) {
    case TftpTransfer::State::kSent:
      ++served_;
      startTransfer();
      break;
    case TftpTransfer::State::kTimedOut:
      // Who falls silent gets no further image.
      served_ = images_.size();
      startTransfer();
      break;
    default:
      break;
  }
}

}  // namespace omniset::loader::test
