// BOOTP requests as boot firmware sends them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "boot/bootp_packet.h"
#include "core/mac_address.h"
#include "tests/fakes/bytes_of.h"

namespace omniset::test {

constexpr std::string_view kPxeClass = "PXEClient:Arch:00000:UNDI:002001";
constexpr std::string_view kEtherbootClass = "Etherboot-5.2";
constexpr MacAddress kClientMac{{0x02, 0, 0, 0, 0, 0x0A}};

inline void append(Bytes& bytes, std::string_view text) {
  bytes.insert(bytes.end(), text.begin(), text.end());
}

inline Bytes option(std::uint8_t code, std::string_view value) {
  Bytes bytes{code, static_cast<std::uint8_t>(value.size())};
  append(bytes, value);
  return bytes;
}

// The fixed part of a request: every field that the client may fill has bytes of its own.
inline Bytes requestHead(const MacAddress& mac = kClientMac) {
  Bytes bytes{1,    1,    6,    0,                                   // op, htype, hlen, hops
              0x12, 0x34, 0x56, 0x78,                                // xid
              0x00, 0x04, 0x80, 0x00,                                // secs, flags
              0,    0,    0,    0};                                  // ciaddr
  bytes.insert(bytes.end(), {0, 0, 0, 0, 0, 0, 0, 0, 10, 1, 2, 3});  // yiaddr, siaddr, giaddr
  bytes.insert(bytes.end(), mac.bytes.begin(), mac.bytes.end());
  bytes.resize(44);
  append(bytes, "boot-host");
  bytes.resize(108);
  append(bytes, "/tftpboot/own.nbi");
  bytes.resize(236);
  bytes.insert(bytes.end(), {99, 130, 83, 99});
  return bytes;
}

// A request with these options, and an end.
inline Bytes requestWith(std::initializer_list<Bytes> options, const MacAddress& mac = kClientMac) {
  Bytes bytes = requestHead(mac);
  for (const Bytes& each : options) bytes.insert(bytes.end(), each.begin(), each.end());
  bytes.push_back(255);
  return bytes;
}

// As a PXE boot ROM sends it: the vendor class stands among other options.
inline Bytes pxeRequest(const MacAddress& mac = kClientMac) {
  return requestWith({option(53, "\x01"), option(57, "\x05\xC0"), option(93, std::string(2, '\0')),
                      option(60, kPxeClass), option(55, "\x01\x03\x42\x43")},
                     mac);
}

inline Bytes etherbootRequest(const MacAddress& mac = kClientMac) {
  return requestWith({option(60, kEtherbootClass)}, mac);
}

// As it lies in the receive buffer.
inline BootpPacket received(std::span<const std::uint8_t> bytes) {
  BootpPacket packet;
  std::copy_n(bytes.begin(), std::min(bytes.size(), packet.bytes.size()), packet.bytes.begin());
  return packet;
}

}  // namespace omniset::test
