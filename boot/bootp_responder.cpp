#include "boot/bootp_responder.h"

#include <utility>

#include "core/error.h"
#include "core/ipv4_address.h"
#include "core/trace.h"

namespace omniset {

BootpResponder::BootpResponder(std::string bootFileName, std::unique_ptr<UdpSocket> socket,
                               LocalAddresses& addresses)
    : bootFileName_(std::move(bootFileName)), socket_(std::move(socket)), addresses_(addresses) {
  socket_->open("failed to create bootp socket");
  socket_->allowAddressReuse("can't set SO_REUSEADDR");
  socket_->allowBroadcast("can't set SO_BROADCAST");
  socket_->bind(kBootpServerPort, "bind failed");
}

bool BootpResponder::isBootRequest(const BootpPacket& packet) {
  if (!isAddressRequest(packet)) return false;
  const VendorClasses found = findVendorClasses(packet);
  if (found.pxe) traceLine("got PXE reuqest!");
  if (found.etherboot) traceLine("got ETHERBOOT reuqest!");
  seen_.pxe |= found.pxe;
  seen_.etherboot |= found.etherboot;
  return found.any();
}

bool BootpResponder::reply(BootpPacket& packet, std::uint32_t clientAddress) {
  makeReply(packet, {clientAddress, findLocalAddress(clientAddress, addresses_),
                     seen_.pxe ? &bootFileName_ : nullptr});
  dump(packet);
  const auto reply = std::span(packet.bytes).first(replyLength(packet));
  try {
    if (socket_->sendTo(reply, {kBroadcastAddress, kBootpClientPort}, "sendto failed") ==
        reply.size()) {
      return true;
    }
  } catch (const SocketExc&) {
    // A network that is down for a moment must not end the service.
  }
  traceLine("sendto failed");
  return false;
}

}  // namespace omniset
