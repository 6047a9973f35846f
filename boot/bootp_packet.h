// A BOOTP packet (RFC 951, with an option area of 1024 bytes for RFC 1497 and RFC 2132): the
// request as it was received and, changed in place, the reply. Addresses are in network byte order
// with the first octet in the lowest byte.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "core/mac_address.h"

namespace omniset {

constexpr std::uint16_t kBootpServerPort = 67;
constexpr std::uint16_t kBootpClientPort = 68;

struct BootpPacket {
  static constexpr std::size_t kSize = 1264;
  static constexpr std::size_t kOptions = 240;  // where the options begin

  // Zeros behind what was received: a short request reads as one that is padded.
  std::array<std::uint8_t, kSize> bytes{};
};

struct BootpFields {
  std::uint8_t op = 0;  // 1 request, 2 reply
  std::uint8_t htype = 0;
  std::uint8_t hlen = 0;
  std::uint8_t hops = 0;
  std::uint32_t xid = 0;
  std::uint16_t secs = 0;
  std::uint16_t flags = 0;
  std::uint32_t ciaddr = 0;
  std::uint32_t yiaddr = 0;
  std::uint32_t siaddr = 0;
  std::uint32_t giaddr = 0;
  // These point into the packet.
  std::span<const std::uint8_t> chaddr;  // 16 bytes
  std::span<const std::uint8_t> sname;   // 64
  std::span<const std::uint8_t> file;    // 128
  std::uint32_t cookie = 0;
};

BootpFields readFields(const BootpPacket& packet);

// The client's hardware address.
MacAddress clientMac(const BootpPacket& packet);

// A request of an Ethernet client that has no address yet and sits on this segment.
bool isAddressRequest(const BootpPacket& packet);

// The boot firmware that a request names as its vendor class.
struct VendorClasses {
  bool pxe = false;
  bool etherboot = false;

  bool any() const { return pxe || etherboot; }
};

// Walks the options. Never reads outside the packet, whatever their lengths say.
VendorClasses findVendorClasses(const BootpPacket& packet);

struct BootpAnswer {
  std::uint32_t clientAddress = 0;
  std::uint32_t serverAddress = 0;
  // For a PXE client the name of its boot file, of which 128 bytes are used; for Etherboot null.
  const std::string* bootFileName = nullptr;
};

// An address request of a known vendor class.
inline bool isFromBootFirmware(const BootpPacket& packet) {
  return isAddressRequest(packet) && findVendorClasses(packet).any();
}

// Turns the request into its reply; what the answer does not name stays as the client sent it.
void makeReply(BootpPacket& packet, const BootpAnswer& answer);

// The bytes up to and with the first end option; all when there is none.
std::size_t replyLength(const BootpPacket& packet);

// Writes the packet to the trace, a line for each field.
void dump(const BootpPacket& packet);

}  // namespace omniset
