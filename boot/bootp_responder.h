// Answers the boot requests of PXE and Etherboot clients, so that they get an address and find the
// TFTP server. A plain BOOTP server: no leases, every client gets the one address that the operator
// set. Used by the boot service's thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "boot/bootp_packet.h"
#include "boot/local_address.h"
#include "core/udp_socket.h"

namespace omniset {

class BootpResponder {
 public:
  // Opens `socket` and binds it to the BOOTP server port. The boot file name is for PXE clients.
  // `addresses` outlives the responder. Raises SocketExc.
  BootpResponder(std::string bootFileName, std::unique_ptr<UdpSocket> socket,
                 LocalAddresses& addresses);

  UdpSocket& socket() { return *socket_; }

  // True when the packet is a request to be answered. Remembers which kinds of client have been
  // seen: from the first PXE client on all are answered as PXE clients, for as long as this lives.
  bool isBootRequest(const BootpPacket& packet);
  bool pxeSeen() const { return seen_.pxe; }

  // Turns the request into its reply and broadcasts it; false when it could not be sent. Raises
  // Error "GetIpAddrTable".
  bool reply(BootpPacket& packet, std::uint32_t clientAddress);

 private:
  std::string bootFileName_;
  std::unique_ptr<UdpSocket> socket_;
  LocalAddresses& addresses_;
  VendorClasses seen_;
};

}  // namespace omniset
