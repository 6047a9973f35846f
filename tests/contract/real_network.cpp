#include "tests/contract/real_network.h"

#include <random>
#include <stdexcept>

#include "core/error.h"

namespace omniset::test {

BoundSocket bindFreePort(const std::string& interfaceName) {
  // Below the ports that systems hand out by themselves.
  std::uniform_int_distribution<std::uint16_t> ports(20'000, 32'000);
  std::random_device random;
  for (int attempt = 0; attempt < 100; ++attempt) {
    BoundSocket bound{makeUdpSocket(interfaceName), ports(random)};
    bound.socket->open("socket() failed");
    try {
      bound.socket->bind(bound.port, "bind() failed");
    } catch (const SocketExc&) {
      continue;
    }
    return bound;
  }
  throw std::runtime_error("no free UDP port found");
}

}  // namespace omniset::test
