// Real sockets of this computer on its loopback network.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core/ipv4_address.h"
#include "core/udp_socket.h"

namespace omniset::test {

constexpr std::uint32_t kLoopback = ipv4(127, 0, 0, 1);

struct BoundSocket {
  std::unique_ptr<UdpSocket> socket;
  std::uint16_t port = 0;
};

// An open socket on a port that nobody else uses now.
BoundSocket bindFreePort(const std::string& interfaceName = {});

}  // namespace omniset::test
