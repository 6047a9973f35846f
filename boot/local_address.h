// The IPv4 addresses of this computer, and which of them a booting client reaches. Addresses and
// masks are in network byte order.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace omniset {

struct LocalAddress {
  std::uint32_t index = 0;  // the system's number for the interface
  std::uint32_t address = 0;
  std::uint32_t mask = 0;
  std::string interfaceName;  // empty on Windows, where interfaces are only numbered
};

class LocalAddresses {
 public:
  virtual ~LocalAddresses() = default;
  // In the system's order. Raises Error "GetIpAddrTable".
  virtual std::vector<LocalAddress> list() = 0;
};

class SystemLocalAddresses : public LocalAddresses {
 public:
  // With a name only the addresses of that interface; not to be used on Windows.
  explicit SystemLocalAddresses(std::string interfaceName = {})
      : interfaceName_(std::move(interfaceName)) {}
  std::vector<LocalAddress> list() override;

 private:
  std::string interfaceName_;
};

// The first address on whose subnet the client is.
std::optional<LocalAddress> addressOnSubnetOf(std::uint32_t clientAddress,
                                              const std::vector<LocalAddress>& addresses);

// This computer's address for the client: that on its subnet, else the first, 0 when there is none.
// Writes the addresses that it looks at to the trace. Raises Error "GetIpAddrTable".
std::uint32_t findLocalAddress(std::uint32_t clientAddress, LocalAddresses& addresses);

}  // namespace omniset
