// A network segment on simulated time between the boot service and its clients. The service's
// sockets wait in it: while one waits, everything else on the segment happens. Clients are called
// with what reaches them.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include "core/udp_socket.h"
#include "tests/sim/event_queue.h"
#include "tests/sim/random.h"
#include "tests/sim/sim_network.h"

namespace omniset::test {

class BootNetwork {
 public:
  using Bytes = std::vector<std::uint8_t>;
  using Receiver = std::function<void(const Bytes& datagram, std::uint16_t fromPort)>;

  struct Sent {
    Micros time;
    Bytes bytes;
    UdpPeer to;
  };

  explicit BootNetwork(std::uint64_t seed = 1, const sim::NetworkFaults& faults = {})
      : random_(seed), faults_(faults) {}
  BootNetwork(const BootNetwork&) = delete;
  BootNetwork& operator=(const BootNetwork&) = delete;

  sim::EventQueue& events() { return events_; }
  sim::Random& random() { return random_; }
  void setFaults(const sim::NetworkFaults& faults) { faults_ = faults; }

  // A socket of the service, which the network outlives.
  std::unique_ptr<UdpSocket> makeSocket();
  // What the service has sent, also what was lost on the way.
  const std::vector<Sent>& sent() const { return sent_; }
  // Somebody else has the port: binding it fails.
  void take(std::uint16_t port) { sockets_[port] = nullptr; }
  bool isBound(std::uint16_t port) const { return sockets_.contains(port); }
  // The service's sendto() fails.
  void refuseSending(bool refused) { sendingRefused_ = refused; }

  // The clients' side. Ports tell the clients apart; what is broadcast reaches all.
  void listen(std::uint16_t port, Receiver receiver) {
    clients_.emplace(port, std::move(receiver));
  }
  void hangUp(std::uint16_t port) { clients_.erase(port); }
  void sendToService(const Bytes& datagram, std::uint16_t fromPort, std::uint16_t toPort);

 private:
  class Socket;

  // Lets `arrive` happen once, twice or not at all.
  void carry(const Bytes& datagram, const std::function<void(const Bytes&)>& arrive);

  sim::EventQueue events_;
  sim::Random random_;
  sim::NetworkFaults faults_;
  std::map<std::uint16_t, Socket*> sockets_;
  std::multimap<std::uint16_t, Receiver> clients_;
  std::vector<Sent> sent_;
  bool sendingRefused_ = false;
};

}  // namespace omniset::test
