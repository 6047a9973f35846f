// flood INTERFACE COUNT: broadcasts datagrams of any content on the install link's port, from that
// port, which another program on this computer may hold. Needs the right to raw sockets.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include "core/byte_cursor.h"
#include "link/broadcast_endpoint.h"
#include "link/link_frame.h"

namespace {

using omniset::kFrameHeaderLength;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kUdpHeaderLength = 8;
constexpr std::size_t kPauseAfter =
    50;  // datagrams, so that the receivers are busy, not only losing

// Half of them well-formed frames with random numbers, some of those announcements; the rest noise.
Bytes anyPayload(std::mt19937& random) {
  Bytes bytes(random() % 1472);
  std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<std::uint8_t>(random()); });
  if (bytes.size() < kFrameHeaderLength || random() % 2) return bytes;
  const std::size_t length = bytes.size() - kFrameHeaderLength;
  omniset::ByteWriter(std::span(bytes).subspan(14)).u16le(static_cast<std::uint16_t>(length));
  if (random() % 4 == 0) {
    std::fill_n(bytes.begin() + 6, 6, std::uint8_t{0});
    std::copy_n("DSCV\n", std::min<std::size_t>(5, length), bytes.begin() + kFrameHeaderLength);
  }
  return bytes;
}

Bytes withUdpHeader(const Bytes& payload) {
  Bytes datagram(kUdpHeaderLength);
  const auto put = [&](std::size_t at, std::size_t value) {
    datagram[at] = static_cast<std::uint8_t>(value >> 8);
    datagram[at + 1] = static_cast<std::uint8_t>(value);
  };
  put(0, omniset::kInstallPort);
  put(2, omniset::kInstallPort);
  put(4, kUdpHeaderLength + payload.size());
  datagram.insert(datagram.end(), payload.begin(), payload.end());
  return datagram;
}

int openRawSocket(const char* interface) {
  const int yes = 1;
  const int raw = socket(AF_INET, SOCK_RAW, IPPROTO_UDP);
  setsockopt(raw, SOL_SOCKET, SO_BROADCAST, &yes, sizeof yes);
  const auto length = static_cast<socklen_t>(std::strlen(interface));
  if (setsockopt(raw, SOL_SOCKET, SO_BINDTODEVICE, interface, length) < 0) return -1;
  return raw;
}

}  // namespace

int main(int argc, char** argv) {
  const int raw = argc == 3 ? openRawSocket(argv[1]) : -1;
  if (raw < 0) {
    std::fprintf(stderr, "usage: flood INTERFACE COUNT (as root)\n");
    return 2;
  }
  sockaddr_in everybody{};
  everybody.sin_family = AF_INET;
  everybody.sin_addr.s_addr = INADDR_BROADCAST;
  std::mt19937 random(1);
  const long count = std::atol(argv[2]);
  for (long sent = 0; sent < count; ++sent) {
    const Bytes datagram = withUdpHeader(anyPayload(random));
    if (sendto(raw, datagram.data(), datagram.size(), 0,
               reinterpret_cast<const sockaddr*>(&everybody), sizeof everybody) < 0) {
      std::perror("sendto");
      return 1;
    }
    if (sent % kPauseAfter == 0) usleep(1000);
  }
  return 0;
}
