#include "boot_network.h"

#include <algorithm>

#include "core/error.h"
#include "core/ipv4_address.h"

namespace omniset::test {

namespace {
constexpr std::uint32_t kClientsAddress = ipv4(192, 168, 88, 20);
constexpr std::size_t kInboxLimit = 500;  // datagrams beyond it are lost, as in a socket's buffer
}  // namespace

class BootNetwork::Socket : public UdpSocket {
 public:
  explicit Socket(BootNetwork& network) : network_(network) {}
  ~Socket() override {
    if (port_ != 0) network_.sockets_.erase(port_);
  }

  void open(const char*) override {}
  void allowBroadcast(const char*) override {}
  void allowAddressReuse(const char*) override {}
  void bind(std::uint16_t port, const char* failure) override {
    if (!network_.sockets_.emplace(port, this).second) throw SocketExc(failure);
    port_ = port;
  }

  std::size_t sendTo(std::span<const std::uint8_t> bytes, const UdpPeer& to,
                     const char* failure) override {
    if (network_.sendingRefused_) throw SocketExc(failure);
    const Bytes datagram(bytes.begin(), bytes.end());
    network_.sent_.push_back({network_.events_.now(), datagram, to});
    network_.carry(datagram, [&network = network_, to, from = port_](const Bytes& arrived) {
      // A copy: who is called may hang up, or listen to more.
      std::vector<Receiver> called;
      const auto [first, last] = network.clients_.equal_range(to.port);
      for (auto each = first; each != last; ++each) called.push_back(each->second);
      for (const Receiver& receiver : called) receiver(arrived, from);
    });
    return bytes.size();
  }

  bool waitReadable(Micros timeout, const char*) override {
    const auto expired = std::make_shared<bool>(false);
    network_.events_.after(timeout, [expired] { *expired = true; });
    while (inbox_.empty() && !*expired) network_.events_.step();
    return !inbox_.empty();
  }

  std::size_t receiveFrom(std::span<std::uint8_t> buffer, UdpPeer& from, const char*) override {
    const auto [datagram, fromPort] = inbox_.front();
    inbox_.pop_front();
    const std::size_t length = std::min(buffer.size(), datagram.size());
    std::copy_n(datagram.begin(), length, buffer.begin());
    from = {kClientsAddress, fromPort};
    return length;
  }

  void arrived(const Bytes& datagram, std::uint16_t fromPort) {
    if (inbox_.size() < kInboxLimit) inbox_.emplace_back(datagram, fromPort);
  }

 private:
  BootNetwork& network_;
  std::uint16_t port_ = 0;
  std::deque<std::pair<Bytes, std::uint16_t>> inbox_;
};

std::unique_ptr<UdpSocket> BootNetwork::makeSocket() {
  return std::make_unique<Socket>(*this);
}

void BootNetwork::sendToService(const Bytes& datagram, std::uint16_t fromPort,
                                std::uint16_t toPort) {
  // Only here: a client could not tell a block that was cut from a file's last one.
  Bytes sent = datagram;
  if (!sent.empty() && random_.chance(faults_.truncation)) {
    sent.resize(static_cast<std::size_t>(random_.between(0, std::ssize(sent) - 1)));
  }
  carry(sent, [this, fromPort, toPort](const Bytes& arrived) {
    const auto found = sockets_.find(toPort);
    if (found != sockets_.end() && found->second) found->second->arrived(arrived, fromPort);
  });
}

void BootNetwork::carry(const Bytes& datagram, const std::function<void(const Bytes&)>& arrive) {
  if (random_.chance(faults_.loss)) return;
  const int times = random_.chance(faults_.repetition) ? 2 : 1;
  for (int i = 0; i < times; ++i) {
    events_.after(random_.between(faults_.shortestDelay, faults_.longestDelay),
                  [arrive, datagram] { arrive(datagram); });
  }
}

}  // namespace omniset::test
