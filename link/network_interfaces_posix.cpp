#include <ifaddrs.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <netpacket/packet.h>
#include <sys/socket.h>

#include <algorithm>
#include <memory>

#include "core/error.h"
#include "link/network_interfaces.h"

namespace omniset {

namespace {

// The link-level address of an Ethernet adapter that is up, or null.
const sockaddr_ll* ethernetAddress(const ifaddrs& entry) {
  if (!entry.ifa_addr || entry.ifa_addr->sa_family != AF_PACKET) return nullptr;
  if (!(entry.ifa_flags & IFF_UP) || !(entry.ifa_flags & IFF_BROADCAST)) return nullptr;
  const auto* address = reinterpret_cast<const sockaddr_ll*>(entry.ifa_addr);
  const bool ethernet = address->sll_hatype == ARPHRD_ETHER && address->sll_halen == 6;
  return ethernet ? address : nullptr;
}

}  // namespace

std::vector<NetworkInterface> SystemNetworkInterfaces::list() {
  ifaddrs* first = nullptr;
  if (getifaddrs(&first) < 0) throw SocketExc("getifaddrs() failed");
  const std::unique_ptr<ifaddrs, void (*)(ifaddrs*)> owner(first, freeifaddrs);
  std::vector<NetworkInterface> found;
  for (const ifaddrs* entry = first; entry; entry = entry->ifa_next) {
    const sockaddr_ll* address = ethernetAddress(*entry);
    if (!address) continue;
    NetworkInterface adapter{entry->ifa_name, {}};
    std::copy_n(address->sll_addr, adapter.mac.bytes.size(), adapter.mac.bytes.begin());
    found.push_back(std::move(adapter));
  }
  return found;
}

}  // namespace omniset
