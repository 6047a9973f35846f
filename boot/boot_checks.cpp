#include "boot/boot_checks.h"

#include <algorithm>
#include <bit>
#include <vector>

#include "boot/bootp_packet.h"
#include "boot/tftp_packet.h"
#include "core/ipv4_address.h"
#include "core/shown_text.h"

namespace omniset {

namespace {

constexpr std::uint8_t kLoopbackNetwork = 127;

bool isUsable(const LocalAddress& local) {
  return local.address != 0 && (local.address & 0xFF) != kLoopbackNetwork;
}

// Its first or last address. Subnets of one or two computers have neither.
bool isWholeSubnet(std::uint32_t address, std::uint32_t mask) {
  const std::uint32_t hostBits = ~mask;
  const std::uint32_t host = address & hostBits;
  return std::popcount(hostBits) > 1 && (host == 0 || host == hostBits);
}

std::string subnetList(const std::vector<LocalAddress>& addresses) {
  std::string list;
  for (const LocalAddress& local : addresses) {
    list += (list.empty() ? "" : ", ") + dottedQuad(local.address) + " (netmask " +
            dottedQuad(local.mask) + ")";
  }
  return list;
}

std::vector<LocalAddress> usableAddresses(std::vector<LocalAddress> rows) {
  std::erase_if(rows, [](const LocalAddress& local) { return !isUsable(local); });
  return rows;
}

}  // namespace

bool hasNetworkAddress(LocalAddresses& addresses) {
  return !usableAddresses(addresses.list()).empty();
}

std::optional<std::string> clientAddressProblem(std::uint32_t clientAddress,
                                                LocalAddresses& addresses) {
  const std::vector<LocalAddress> rows = addresses.list();
  const std::vector<LocalAddress> usable = usableAddresses(rows);
  if (usable.empty()) {
    return "This computer has no network address: give its network adapter one, and plug in the "
           "cable.";
  }
  const std::string client = dottedQuad(clientAddress);
  const auto local = addressOnSubnetOf(clientAddress, usable);
  if (!local) {
    return "The client address " + client +
           " is on no subnet of this computer, so that a PC which gets it cannot reach this "
           "computer: choose a free address beside one of these: " +
           subnetList(usable) + ".";
  }
  // The service takes the first that fits, usable or not.
  if (addressOnSubnetOf(clientAddress, rows)->address != local->address) {
    return "PCs would be sent to an adapter of this computer that has no address: disable the "
           "adapters that are not in use.";
  }
  const bool isOwn = std::any_of(usable.begin(), usable.end(), [&](const LocalAddress& row) {
    return row.address == clientAddress;
  });
  if (isOwn) {
    return "The client address " + client +
           " is this computer's own: choose another, free address on its subnet.";
  }
  if (isWholeSubnet(clientAddress, local->mask)) {
    return "The client address " + client +
           " stands for its whole subnet: choose a free address of a single computer there.";
  }
  return std::nullopt;
}

void tryBootPorts(const std::function<std::unique_ptr<UdpSocket>()>& makeSocket) {
  // The service lets others share its BOOTP port; here nobody may have it: two who answer would
  // only be in each other's way.
  for (const std::uint16_t port : {kBootpServerPort, kTftpPort}) {
    const auto socket = makeSocket();
    socket->open("failed to create socket");
    socket->bind(port, "bind failed");
  }
}

std::string bootFailureText(std::string_view exceptionText) {
  const std::string reason = " (" + shownText(exceptionText) + ")";
  if (exceptionText.starts_with("bind failed")) {
    return "Network booting needs the UDP ports " + std::to_string(kBootpServerPort) + " and " +
           std::to_string(kTftpPort) +
           ", which cannot be had: another DHCP, BOOTP or TFTP server probably runs on this "
           "computer, or this program already, or the ports are reserved for its administrator. "
           "End that server, or start this program as administrator, and try again." +
           reason;
  }
  return "Network booting cannot go on: check that the network adapter is up and that this program "
         "may use the network." +
         reason;
}

}  // namespace omniset
