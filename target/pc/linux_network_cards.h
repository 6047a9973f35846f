// The network cards as the Linux kernel shows them.
#pragma once

#include <string>
#include <vector>

#include "target/network_cards.h"

namespace omniset {

class LinuxNetworkCards : public NetworkCards {
 public:
  // Raises Failure when the kernel gives no socket to ask with.
  LinuxNetworkCards();
  ~LinuxNetworkCards() override;
  LinuxNetworkCards(const LinuxNetworkCards&) = delete;
  LinuxNetworkCards& operator=(const LinuxNetworkCards&) = delete;

  std::vector<NetworkCard> bringUp() override;
  bool hasLink(const NetworkCard& card) override;
  std::unique_ptr<UdpSocket> makeSocket(const NetworkCard& card) override;
  void idle(Micros time) override;

 private:
  int socket_;
};

}  // namespace omniset
