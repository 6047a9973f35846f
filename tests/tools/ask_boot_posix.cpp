// ask-boot INTERFACE MAC [VENDOR-CLASS [SECONDS]]: asks for an address and a boot file, as boot
// firmware of that vendor class does ("PXEClient:Arch:00000:UNDI:002001" unless told otherwise),
// and prints what is answered, a word per field. Fails when nothing is within so many seconds (10
// unless told otherwise).

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "boot/bootp_packet.h"
#include "core/byte_cursor.h"
#include "core/error.h"
#include "core/ipv4_address.h"
#include "core/udp_socket.h"
#include "tests/boot/boot_requests.h"

namespace {

using namespace omniset;

constexpr Micros kWait = 10 * kSecond;

test::Bytes request(const MacAddress& mac, std::string_view vendorClass) {
  return test::requestWith({test::option(60, vendorClass)}, mac);
}

void print(const BootpPacket& reply, std::size_t length) {
  const BootpFields fields = readFields(reply);
  const std::string_view file = asText(fields.file);
  std::printf("bytes %zu client %s server %s file %s options", length,
              dottedQuad(fields.yiaddr).c_str(), dottedQuad(fields.siaddr).c_str(),
              std::string(file.substr(0, file.find('\0'))).c_str());
  for (std::size_t at = BootpPacket::kOptions; at < length; ++at) {
    std::printf(" %02x", reply.bytes[at]);
  }
  std::printf("\n");
}

int ask(const std::string& interface, const MacAddress& mac, std::string_view vendorClass,
        Micros wait) {
  const auto socket = makeUdpSocket(interface);
  socket->open("socket() failed");
  socket->allowAddressReuse("setsockopt() SO_REUSEADDR failed");
  socket->allowBroadcast("setsockopt() SO_BROADCAST failed");
  socket->bind(kBootpClientPort, "bind() failed");
  socket->sendTo(request(mac, vendorClass), {kBroadcastAddress, kBootpServerPort},
                 "sendto() failed");
  while (socket->waitReadable(wait, "select() failed")) {
    BootpPacket reply;
    UdpPeer from;
    const std::size_t length = socket->receiveFrom(reply.bytes, from, "recvfrom() failed");
    if (readFields(reply).op != 2 || clientMac(reply) != mac) continue;
    print(reply, length);
    return 0;
  }
  std::fprintf(stderr, "ask-boot: no answer\n");
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  const auto mac = argc >= 3 && argc <= 5 ? MacAddress::parse(argv[2]) : std::nullopt;
  if (!mac) {
    std::fprintf(stderr, "usage: ask-boot INTERFACE MAC [VENDOR-CLASS [SECONDS]]\n");
    return 2;
  }
  try {
    return ask(argv[1], *mac, argc > 3 ? argv[3] : test::kPxeClass,
               argc > 4 ? std::atoi(argv[4]) * kSecond : kWait);
  } catch (const Error& e) {
    std::fprintf(stderr, "ask-boot: %s\n", e.what());
    return 2;
  }
}
