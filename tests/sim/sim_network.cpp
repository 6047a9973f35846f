#include "sim_network.h"

#include <algorithm>

#include "core/ipv4_address.h"

namespace omniset::sim {

namespace {
constexpr std::size_t kInboxLimit = 2000;  // datagrams beyond it are lost, as in a socket's buffer
}

void SimNetwork::send(std::span<const std::uint8_t> bytes, std::uint16_t fromPort) {
  const auto shared = std::make_shared<const std::vector<std::uint8_t>>(bytes.begin(), bytes.end());
  for (SimNode* node : nodes_) {
    if (random_.chance(faults_.loss)) continue;
    deliver(*node, shared, fromPort);
    if (random_.chance(faults_.repetition)) deliver(*node, shared, fromPort);
  }
}

void SimNetwork::deliver(SimNode& node, const Bytes& bytes, std::uint16_t fromPort) {
  const Micros delay = random_.between(faults_.shortestDelay, faults_.longestDelay);
  events_.after(delay, [&node, arriving = perhapsCut(bytes), fromPort] {
    node.arrived({arriving, fromPort});
  });
}

SimNetwork::Bytes SimNetwork::perhapsCut(const Bytes& bytes) {
  if (bytes->empty() || !random_.chance(faults_.truncation)) return bytes;
  const auto length = random_.between(0, std::ssize(*bytes) - 1);
  return std::make_shared<const std::vector<std::uint8_t>>(bytes->begin(), bytes->begin() + length);
}

class SimNode::Socket : public UdpSocket {
 public:
  explicit Socket(SimNode& node) : node_(node) {}

  void open(const char* /*failure*/) override {}
  void allowBroadcast(const char* /*failure*/) override {}
  void allowAddressReuse(const char* /*failure*/) override {}
  void bind(std::uint16_t port, const char* /*failure*/) override { port_ = port; }

  std::size_t sendTo(std::span<const std::uint8_t> bytes, const UdpPeer& /*to*/,
                     const char* /*failure*/) override {
    node_.network_.send(bytes, port_);
    return bytes.size();
  }

  bool waitReadable(Micros timeout, const char* /*failure*/) override {
    if (!node_.inbox_.empty()) return true;
    node_.waiting_ = true;
    node_.events_.after(timeout, [&node = node_, wait = ++node_.wait_] {
      if (wait == node.wait_) node.wake();
    });
    return false;
  }

  std::size_t receiveFrom(std::span<std::uint8_t> buffer, UdpPeer& from,
                          const char* /*failure*/) override {
    const Datagram datagram = node_.inbox_.front();
    node_.inbox_.pop_front();
    const std::size_t length = std::min(buffer.size(), datagram.bytes->size());
    std::copy_n(datagram.bytes->begin(), length, buffer.begin());
    from = {ipv4(192, 168, 88, 7), datagram.fromPort};
    return length;
  }

 private:
  SimNode& node_;
  std::uint16_t port_ = 0;
};

std::unique_ptr<UdpSocket> SimNode::socket() {
  return std::make_unique<Socket>(*this);
}

void SimNode::start(Step step) {
  step_ = std::move(step);
  wake();
}

void SimNode::wake() {
  if (running_ || !step_) return;
  running_ = true;
  do {
    waiting_ = false;
    step_();
  } while (!waiting_);
  running_ = false;
}

void SimNode::arrived(Datagram datagram) {
  if (inbox_.size() < kInboxLimit) inbox_.push_back(std::move(datagram));
  wake();
}

}  // namespace omniset::sim
