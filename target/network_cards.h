// The network cards of the PC that is being installed.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/clock.h"
#include "core/mac_address.h"
#include "core/udp_socket.h"

namespace omniset {

struct NetworkCard {
  std::string name;    // the system's, such as "eth0"
  std::string driver;  // such as "e1000"; empty when the system does not tell
  MacAddress mac;
};

class NetworkCards {
 public:
  virtual ~NetworkCards() = default;
  // Switches every card on and lists them in the system's order.
  virtual std::vector<NetworkCard> bringUp() = 0;
  // Is a cable in, with somebody at its other end? What is sent before is lost.
  virtual bool hasLink(const NetworkCard& card) = 0;
  // A socket, not yet open, that sends and receives on this card only.
  virtual std::unique_ptr<UdpSocket> makeSocket(const NetworkCard& card) = 0;
  // Lets time pass while there is no socket to wait on.
  virtual void idle(Micros time) = 0;
};

}  // namespace omniset
