#include "link/network_interfaces.h"

#include "core/trace.h"

namespace omniset {

std::vector<MacAddress> findInterfaces(NetworkInterfaces& interfaces) {
  std::vector<MacAddress> addresses;
  for (const NetworkInterface& found : interfaces.list()) {
    tracef("iface %d: %s\n", static_cast<int>(addresses.size()), found.mac.text().c_str());
    addresses.push_back(found.mac);
  }
  addresses.push_back(MacAddress{});
  return addresses;
}

}  // namespace omniset
