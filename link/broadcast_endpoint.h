// The socket of the install link: bound to one port on all local addresses, it sends every datagram
// to the limited broadcast address on that same port, because a target that has just booted has no
// IP address. Used by one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "core/clock.h"
#include "core/mac_address.h"
#include "core/udp_socket.h"

namespace omniset {

constexpr std::uint16_t kInstallPort = 5000;

class BroadcastEndpoint {
 public:
  // Opens `socket` for broadcasts on `port` (host byte order). With a trace name, which may be
  // null, it says so in the trace first. Raises SocketExc with "socket() failed",
  // "setsockopt() SO_BROADCAST failed" or "bind() failed".
  BroadcastEndpoint(const MacAddress& localAddress, const char* traceName, std::uint16_t port,
                    std::unique_ptr<UdpSocket> socket);

  // Returns the number of bytes sent. Raises SocketExc "sendto() failed".
  std::size_t sendDatagram(std::span<const std::uint8_t> bytes);

  // Waits at most `timeout` (0: without limit) for a datagram and receives up to 4096 bytes of it;
  // returns its length, or -1 when the time ran out or the datagram came from another port.
  // Raises SocketExc "select() failed", "recvfrom() failed".
  int waitDatagram(std::span<std::uint8_t> buffer, Micros timeout);

  // The MAC address of the adapter on which the targets are reached: the source of every frame.
  const MacAddress& localAddress() const { return localAddress_; }
  // Who sent the datagram received last.
  const UdpPeer& lastSender() const { return lastSender_; }

 private:
  MacAddress localAddress_;
  std::unique_ptr<UdpSocket> socket_;
  UdpPeer destination_;
  UdpPeer lastSender_;
};

}  // namespace omniset
