// A network segment on simulated time that loses, repeats, delays, reorders and cuts datagrams.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "core/udp_socket.h"
#include "event_queue.h"
#include "random.h"

namespace omniset::sim {

struct NetworkFaults {
  double loss = 0;
  double repetition = 0;
  double truncation = 0;
  Micros shortestDelay = 50;
  Micros longestDelay = 50;  // longer than the shortest: datagrams overtake one another
};

// A computer on the segment: an event loop around one socket, run whenever a datagram arrives and
// whenever its wait runs out.
class SimNode;

class SimNetwork {
 public:
  SimNetwork(EventQueue& events, Random& random, const NetworkFaults& faults)
      : events_(events), random_(random), faults_(faults) {}

  void attach(SimNode& node) { nodes_.push_back(&node); }
  // Broadcasts a datagram to all nodes, the sender included.
  void send(std::span<const std::uint8_t> bytes, std::uint16_t fromPort);

 private:
  using Bytes = std::shared_ptr<const std::vector<std::uint8_t>>;

  void deliver(SimNode& node, const Bytes& bytes, std::uint16_t fromPort);
  Bytes perhapsCut(const Bytes& bytes);

  EventQueue& events_;
  Random& random_;
  NetworkFaults faults_;
  std::vector<SimNode*> nodes_;
};

class SimNode {
 public:
  using Step = std::function<void()>;

  SimNode(SimNetwork& network, EventQueue& events) : network_(network), events_(events) {
    network.attach(*this);
  }
  SimNode(const SimNode&) = delete;
  SimNode& operator=(const SimNode&) = delete;

  // The socket of this node's event loop; outlived by the node.
  std::unique_ptr<UdpSocket> socket();
  // Starts the event loop: `step` is one turn of it.
  void start(Step step);
  // Runs the event loop until it waits for something that is not there.
  void wake();

 private:
  friend class SimNetwork;
  class Socket;

  struct Datagram {
    std::shared_ptr<const std::vector<std::uint8_t>> bytes;
    std::uint16_t fromPort;
  };

  void arrived(Datagram datagram);

  SimNetwork& network_;
  EventQueue& events_;
  Step step_;
  std::deque<Datagram> inbox_;
  bool running_ = false;
  bool waiting_ = false;
  std::uint64_t wait_ = 0;  // counts the waits, to know the timeouts of earlier ones
};

}  // namespace omniset::sim
