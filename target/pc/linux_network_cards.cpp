#include "target/pc/linux_network_cards.h"

#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "target/machine_facts.h"
#include "target/pc/system_files.h"

namespace omniset {

namespace {

ifreq requestFor(const std::string& name) {
  ifreq request{};
  name.copy(request.ifr_name, sizeof request.ifr_name - 1);
  return request;
}

std::string driverOf(int socket, const std::string& name) {
  ethtool_drvinfo information{};
  information.cmd = ETHTOOL_GDRVINFO;
  ifreq request = requestFor(name);
  request.ifr_data = reinterpret_cast<char*>(&information);
  if (ioctl(socket, SIOCETHTOOL, &request) < 0) return {};
  return {information.driver, strnlen(information.driver, sizeof information.driver)};
}

// True also when the driver cannot tell.
bool driverSeesLink(int socket, const std::string& name) {
  ethtool_value link{};
  link.cmd = ETHTOOL_GLINK;
  ifreq request = requestFor(name);
  request.ifr_data = reinterpret_cast<char*>(&link);
  return ioctl(socket, SIOCETHTOOL, &request) < 0 || link.data != 0;
}

bool readAddress(int socket, const std::string& name, MacAddress& mac) {
  ifreq request = requestFor(name);
  if (ioctl(socket, SIOCGIFHWADDR, &request) < 0) return false;
  if (request.ifr_hwaddr.sa_family != ARPHRD_ETHER) return false;
  std::copy_n(request.ifr_hwaddr.sa_data, mac.bytes.size(), mac.bytes.begin());
  return true;
}

void switchOn(int socket, const std::string& name) {
  ifreq request = requestFor(name);
  if (ioctl(socket, SIOCGIFFLAGS, &request) < 0) return;
  request.ifr_flags = static_cast<short>(request.ifr_flags | IFF_UP);
  ioctl(socket, SIOCSIFFLAGS, &request);
}

}  // namespace

LinuxNetworkCards::LinuxNetworkCards() : socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
  if (socket_ < 0) failWithReason("The kernel has no network");
}

LinuxNetworkCards::~LinuxNetworkCards() {
  close(socket_);
}

std::vector<NetworkCard> LinuxNetworkCards::bringUp() {
  std::vector<NetworkCard> cards;
  for (const std::string& name : interfaceNames(readSystemFile("/proc/net/dev"))) {
    NetworkCard card{name, driverOf(socket_, name), {}};
    if (!readAddress(socket_, name, card.mac)) continue;
    switchOn(socket_, name);
    cards.push_back(std::move(card));
  }
  return cards;
}

// The kernel calls a card running before its driver has looked, and the driver knows of the link
// before the kernel sends.
bool LinuxNetworkCards::hasLink(const NetworkCard& card) {
  ifreq request = requestFor(card.name);
  const bool isRunning =
      ioctl(socket_, SIOCGIFFLAGS, &request) == 0 && (request.ifr_flags & IFF_RUNNING) != 0;
  return isRunning && driverSeesLink(socket_, card.name);
}

std::unique_ptr<UdpSocket> LinuxNetworkCards::makeSocket(const NetworkCard& card) {
  return makeUdpSocket(card.name);
}

void LinuxNetworkCards::idle(Micros time) {
  usleep(static_cast<useconds_t>(time));
}

}  // namespace omniset
