#include "link/link_frame.h"

#include <algorithm>

#include "core/byte_cursor.h"
#include "core/trace.h"

namespace omniset {

namespace {

constexpr std::uint8_t kIsAckBit = 1;

MacAddress readMac(ByteReader& reader) {
  MacAddress mac;
  const auto bytes = reader.take(mac.bytes.size());
  std::copy(bytes.begin(), bytes.end(), mac.bytes.begin());
  return mac;
}

}  // namespace

FrameHeader LinkFrame::header() const {
  ByteReader reader(bytes);
  FrameHeader header;
  header.source = readMac(reader);
  header.destination = readMac(reader);
  header.isAck = (reader.u8() & kIsAckBit) != 0;
  header.channel = reader.u8();
  header.payloadLength = reader.u16le();
  header.sequence = reader.u16le();
  header.acknowledgement = reader.u16le();
  return header;
}

void LinkFrame::setHeader(const FrameHeader& header) {
  ByteWriter writer(bytes);
  writer.put(header.source.bytes);
  writer.put(header.destination.bytes);
  writer.u8(header.isAck ? kIsAckBit : std::uint8_t{0});
  writer.u8(header.channel);
  writer.u16le(header.payloadLength);
  writer.u16le(header.sequence);
  writer.u16le(header.acknowledgement);
}

std::span<const std::uint8_t> LinkFrame::payload() const {
  return datagram().subspan(kFrameHeaderLength);
}

std::string_view LinkFrame::payloadText() const {
  return asText(payload());
}

std::span<const std::uint8_t> LinkFrame::datagram() const {
  const std::size_t length = kFrameHeaderLength + header().payloadLength;
  return std::span(bytes).first(std::min(length, bytes.size()));
}

void dumpFrame(const LinkFrame& frame) {
  if (!traceEnabled()) return;
  const FrameHeader header = frame.header();
  tracef("Src: %s\tDst: %s\nIs ack: %d\tChannel: %d\tPayload: %d\nSeqNum: %d\tAckNum: %d\n",
         header.source.text().c_str(), header.destination.text().c_str(), int{header.isAck},
         header.channel, header.payloadLength, header.sequence, header.acknowledgement);
}

}  // namespace omniset
