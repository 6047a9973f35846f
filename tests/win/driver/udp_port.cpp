#include "tests/win/driver/udp_port.h"

#include <winsock2.h>
// After winsock2.h, before which it would bring in an older one.
#include <windows.h>

#include <string>

namespace omniset::test {

namespace {

constexpr std::size_t kLargest = 65'536;

sockaddr_in addressOf(std::uint32_t address, std::uint16_t port) {
  sockaddr_in result{};
  result.sin_family = AF_INET;
  result.sin_addr.s_addr = htonl(address);
  result.sin_port = htons(port);
  return result;
}

void require(bool succeeded, const std::string& what) {
  if (!succeeded) throw WindowFault(what + ", error " + std::to_string(WSAGetLastError()));
}

}  // namespace

UdpPort::UdpPort(std::uint16_t port) {
  WSADATA data;
  require(WSAStartup(MAKEWORD(2, 1), &data) == 0, "no sockets");
  socket_ = socket(AF_INET, SOCK_DGRAM, 0);
  require(socket_ != INVALID_SOCKET, "no socket");
  // A program that is started meanwhile would hold it too.
  SetHandleInformation(reinterpret_cast<HANDLE>(socket_), HANDLE_FLAG_INHERIT, 0);
  const int yes = 1;
  require(setsockopt(socket_, SOL_SOCKET, SO_BROADCAST, reinterpret_cast<const char*>(&yes),
                     sizeof yes) == 0,
          "no broadcasts");
  const sockaddr_in own = addressOf(INADDR_ANY, port);
  require(bind(socket_, reinterpret_cast<const sockaddr*>(&own), sizeof own) == 0,
          "port " + std::to_string(port) + " cannot be had");
}

UdpPort::~UdpPort() {
  closesocket(socket_);
  WSACleanup();
}

void UdpPort::broadcast(const std::vector<std::uint8_t>& datagram, std::uint16_t toPort) {
  const sockaddr_in all = addressOf(INADDR_BROADCAST, toPort);
  const auto size = static_cast<int>(datagram.size());
  require(sendto(socket_, reinterpret_cast<const char*>(datagram.data()), size, 0,
                 reinterpret_cast<const sockaddr*>(&all), sizeof all) == size,
          "a broadcast cannot be sent");
}

std::vector<std::uint8_t> UdpPort::receive(Milliseconds limit) {
  fd_set readable;
  FD_ZERO(&readable);
  readable.fd_array[readable.fd_count++] = socket_;
  timeval wait{static_cast<long>(limit.count() / 1000),
               static_cast<long>(limit.count() % 1000 * 1000)};
  if (select(0, &readable, nullptr, nullptr, &wait) != 1) return {};
  std::vector<std::uint8_t> datagram(kLargest);
  const int size = recv(socket_, reinterpret_cast<char*>(datagram.data()), kLargest, 0);
  require(size >= 0, "a datagram cannot be received");
  datagram.resize(static_cast<std::size_t>(size));
  return datagram;
}

}  // namespace omniset::test
