#include "boot/bootp_packet.h"

#include <algorithm>
#include <string_view>

#include "core/byte_cursor.h"
#include "core/ipv4_address.h"
#include "core/shown_text.h"
#include "core/trace.h"

namespace omniset {

namespace {

constexpr std::uint8_t kRequest = 1;
constexpr std::uint8_t kReply = 2;
constexpr std::uint8_t kEthernet = 1;

constexpr std::size_t kYourAddress = 16;
constexpr std::size_t kFile = 108;
constexpr std::size_t kFileLength = 128;

constexpr std::uint8_t kPad = 0;
constexpr std::uint8_t kBootFileSize = 13;
constexpr std::uint8_t kVendorClass = 60;
constexpr std::uint8_t kEnd = 255;

// Of the network boot program, in blocks of 512 bytes.
constexpr std::uint16_t kBootProgramBlocks = 22;

constexpr std::size_t kDumpedOptions = 256;

char lowerCase(std::uint8_t letter) {
  return static_cast<char>(letter >= 'A' && letter <= 'Z' ? letter + ('a' - 'A') : letter);
}

bool beginsWith(std::span<const std::uint8_t> value, std::string_view lowerCaseWord) {
  return value.size() >= lowerCaseWord.size() &&
         std::equal(lowerCaseWord.begin(), lowerCaseWord.end(), value.begin(),
                    [](char wanted, std::uint8_t letter) { return wanted == lowerCase(letter); });
}

void noteVendorClass(std::span<const std::uint8_t> value, VendorClasses& found) {
  if (beginsWith(value, "pxeclient")) {
    found.pxe = true;
  } else if (beginsWith(value, "etherboot")) {
    found.etherboot = true;
  }
}

// Of the option at `at`, which is neither padding nor the end: its length byte, 0 behind the
// packet.
std::size_t lengthByte(const BootpPacket& packet, std::size_t at) {
  return at + 1 < BootpPacket::kSize ? packet.bytes[at + 1] : 0;
}

// What is before the first zero byte.
std::string fieldText(std::span<const std::uint8_t> field) {
  const std::string_view text = asText(field);
  return shownText(text.substr(0, text.find('\0')));
}

std::string hexText(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) text += formatText("%02x", byte);
  return text;
}

}  // namespace

BootpFields readFields(const BootpPacket& packet) {
  ByteReader reader(packet.bytes);
  BootpFields fields;
  fields.op = reader.u8();
  fields.htype = reader.u8();
  fields.hlen = reader.u8();
  fields.hops = reader.u8();
  fields.xid = reader.u32be();
  fields.secs = reader.u16be();
  fields.flags = reader.u16be();
  fields.ciaddr = reader.u32le();
  fields.yiaddr = reader.u32le();
  fields.siaddr = reader.u32le();
  fields.giaddr = reader.u32le();
  fields.chaddr = reader.take(16);
  fields.sname = reader.take(64);
  fields.file = reader.take(kFileLength);
  fields.cookie = reader.u32be();
  return fields;
}

MacAddress clientMac(const BootpPacket& packet) {
  MacAddress mac;
  const auto chaddr = readFields(packet).chaddr;
  std::copy_n(chaddr.begin(), mac.bytes.size(), mac.bytes.begin());
  return mac;
}

bool isAddressRequest(const BootpPacket& packet) {
  const BootpFields fields = readFields(packet);
  return fields.op == kRequest && fields.htype == kEthernet && fields.hlen == 6 &&
         fields.hops == 0 && fields.ciaddr == 0;
}

VendorClasses findVendorClasses(const BootpPacket& packet) {
  const std::span<const std::uint8_t> bytes(packet.bytes);
  VendorClasses found;
  std::size_t at = BootpPacket::kOptions;
  while (at < bytes.size() && bytes[at] != kEnd) {
    if (bytes[at] == kPad) {
      at += 1;
      continue;
    }
    if (bytes[at] == kVendorClass && at + 2 < bytes.size()) {
      noteVendorClass(bytes.subspan(at + 2), found);
      // On purpose not by the option's own length: the value's second byte is taken for one. With a
      // PXE client, whose second letter is an X, that leaps over the options which follow.
      at += 2;
    }
    at += 2 + lengthByte(packet, at);
  }
  return found;
}

void makeReply(BootpPacket& packet, const BootpAnswer& answer) {
  const std::span<std::uint8_t> bytes(packet.bytes);
  bytes[0] = kReply;
  ByteWriter addresses(bytes.subspan(kYourAddress, 8));
  addresses.u32le(answer.clientAddress);
  addresses.u32le(answer.serverAddress);
  ByteWriter options(bytes.subspan(BootpPacket::kOptions));
  if (answer.bootFileName != nullptr) {
    const auto file = bytes.subspan(kFile, kFileLength);
    std::fill(file.begin(), file.end(), std::uint8_t{0});
    ByteWriter(file).put(std::string_view(*answer.bootFileName).substr(0, kFileLength));
    options.u8(kBootFileSize);
    options.u8(2);
    options.u16be(kBootProgramBlocks);
  }
  options.u8(kEnd);
}

std::size_t replyLength(const BootpPacket& packet) {
  std::size_t at = BootpPacket::kOptions;
  while (at < BootpPacket::kSize) {
    const std::uint8_t code = packet.bytes[at];
    if (code == kEnd) return at + 1;
    at += code == kPad ? 1 : 2 + lengthByte(packet, at);
  }
  return BootpPacket::kSize;
}

void dump(const BootpPacket& packet) {
  if (!traceEnabled()) return;
  const BootpFields f = readFields(packet);
  tracef("opcode: %u\nhtype: %u\nhlen: %u\nhops: %u\n", f.op, f.htype, f.hlen, f.hops);
  tracef("xid: %08x\nsecs: %u\nunused: %04x\n", f.xid, f.secs, f.flags);
  traceLine("ciaddr: " + dottedQuad(f.ciaddr));
  traceLine("yiaddr: " + dottedQuad(f.yiaddr));
  traceLine("siaddr: " + dottedQuad(f.siaddr));
  traceLine("giaddr: " + dottedQuad(f.giaddr));
  traceLine("chaddr: " + hexText(f.chaddr));
  traceLine("sname: (" + fieldText(f.sname) + ")");
  traceLine("file: (" + fieldText(f.file) + ")");
  tracef("cookie: %08x\n", f.cookie);
  traceLine("vend: " +
            hexText(std::span(packet.bytes).subspan(BootpPacket::kOptions, kDumpedOptions)));
}

}  // namespace omniset
