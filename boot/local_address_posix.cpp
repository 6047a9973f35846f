#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <cstring>
#include <memory>

#include "boot/local_address.h"
#include "core/error.h"

namespace omniset {

namespace {

std::uint32_t ipv4Of(const sockaddr* address) {
  if (address == nullptr) return 0;
  sockaddr_in native;
  std::memcpy(&native, address, sizeof native);
  return native.sin_addr.s_addr;
}

// Without the label that an address of its own may have behind a colon.
std::string nameOf(const ifaddrs& entry) {
  const std::string name = entry.ifa_name;
  return name.substr(0, name.find(':'));
}

}  // namespace

std::vector<LocalAddress> SystemLocalAddresses::list() {
  ifaddrs* first = nullptr;
  if (getifaddrs(&first) < 0) throw Error("GetIpAddrTable");
  const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> all(first, freeifaddrs);
  std::vector<LocalAddress> addresses;
  for (const ifaddrs* at = first; at != nullptr; at = at->ifa_next) {
    if (at->ifa_addr == nullptr || at->ifa_addr->sa_family != AF_INET) continue;
    const std::string name = nameOf(*at);
    if (!interfaceName_.empty() && interfaceName_ != name) continue;
    addresses.push_back(
        {if_nametoindex(name.c_str()), ipv4Of(at->ifa_addr), ipv4Of(at->ifa_netmask), name});
  }
  return addresses;
}

}  // namespace omniset
