#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>

#include "bench/tftp/datagram_socket.h"
#include "core/error.h"

namespace omniset::bench {

namespace {

sockaddr_in onLoopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

}  // namespace

DatagramSocket::DatagramSocket(std::uint16_t port)
    : socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
  if (socket_ < 0) throw SocketExc("socket() failed");
  const sockaddr_in own = onLoopback(port);
  const timeval limit{1, 0};
  if (setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit) < 0 ||
      bind(socket_, reinterpret_cast<const sockaddr*>(&own), sizeof own) < 0) {
    throw SocketExc("the socket could not be set up");
  }
}

DatagramSocket::~DatagramSocket() {
  close(socket_);
}

void DatagramSocket::send(std::span<const std::uint8_t> datagram, std::uint16_t toPort) {
  const sockaddr_in to = onLoopback(toPort);
  if (sendto(socket_, datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&to),
             sizeof to) < 0) {
    throw SocketExc("sendto() failed");
  }
}

std::optional<std::size_t> DatagramSocket::receive(std::span<std::uint8_t> buffer,
                                                   std::uint16_t& fromPort) {
  sockaddr_in from{};
  socklen_t fromLength = sizeof from;
  const ssize_t length = recvfrom(socket_, buffer.data(), buffer.size(), 0,
                                  reinterpret_cast<sockaddr*>(&from), &fromLength);
  if (length < 0 && (errno == EAGAIN || errno == EINTR)) return std::nullopt;
  if (length < 0) throw SocketExc("recvfrom() failed");
  fromPort = ntohs(from.sin_port);
  return static_cast<std::size_t>(length);
}

}  // namespace omniset::bench
