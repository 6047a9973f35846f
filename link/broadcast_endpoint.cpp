#include "link/broadcast_endpoint.h"

#include <algorithm>

#include "core/ipv4_address.h"
#include "core/trace.h"

namespace omniset {

namespace {
constexpr std::size_t kReceiveCapacity = 4096;
}

BroadcastEndpoint::BroadcastEndpoint(const MacAddress& localAddress, const char* traceName,
                                     std::uint16_t port, std::unique_ptr<UdpSocket> socket)
    : localAddress_(localAddress),
      socket_(std::move(socket)),
      destination_{kBroadcastAddress, port} {
  if (traceName) tracef("socket(): %s\n", traceName);
  socket_->open("socket() failed");
  socket_->allowBroadcast("setsockopt() SO_BROADCAST failed");
  socket_->bind(port, "bind() failed");
}

std::size_t BroadcastEndpoint::sendDatagram(std::span<const std::uint8_t> bytes) {
  return socket_->sendTo(bytes, destination_, "sendto() failed");
}

int BroadcastEndpoint::waitDatagram(std::span<std::uint8_t> buffer, Micros timeout) {
  if (!socket_->waitReadable(timeout, "select() failed")) return -1;
  const auto room = buffer.first(std::min(buffer.size(), kReceiveCapacity));
  const std::size_t length = socket_->receiveFrom(room, lastSender_, "recvfrom() failed");
  if (lastSender_.port != destination_.port) return -1;
  return static_cast<int>(length);
}

}  // namespace omniset
