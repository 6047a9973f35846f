// A UDP port of this computer that a test holds, as another program would.
#pragma once

#include <cstdint>
#include <vector>

#include "tests/win/driver/waiting.h"

namespace omniset::test {

class UdpPort {
 public:
  // For itself alone, on all addresses. Raises WindowFault when it cannot be had.
  explicit UdpPort(std::uint16_t port);
  ~UdpPort();
  UdpPort(const UdpPort&) = delete;
  UdpPort& operator=(const UdpPort&) = delete;

  void broadcast(const std::vector<std::uint8_t>& datagram, std::uint16_t toPort);
  // The next datagram; empty when none comes in time.
  std::vector<std::uint8_t> receive(Milliseconds limit);

 private:
  std::uintptr_t socket_;
};

}  // namespace omniset::test
