#include "boot/tftp_packet.h"

#include <algorithm>
#include <string>

#include "core/byte_cursor.h"

namespace omniset {

namespace {

constexpr std::array<std::string_view, 9> kErrorTexts{
    "not defined",
    "file not found",
    "access violation",
    "disk full or allocation exceeded",
    "illegal tftp operation",
    "unknown transfer ID",
    "file already exists",
    "no such user",
    "option negotiation failed",
};

std::uint16_t number(TftpOpcode opcode) {
  return static_cast<std::uint16_t>(opcode);
}

// Takes a text off the front, and the zero byte that ends it.
std::string_view takeText(std::string_view& rest) {
  const std::size_t end = std::min(rest.find('\0'), rest.size());
  const std::string_view text = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return text;
}

bool isSizeOption(std::string_view name) {
  constexpr std::string_view kSizeOption = "tsize";
  return std::equal(
      name.begin(), name.end(), kSizeOption.begin(), kSizeOption.end(),
      [](char letter, char wanted) { return letter == wanted || letter == wanted - ('a' - 'A'); });
}

}  // namespace

std::optional<TftpReadRequest> readTftpRequest(std::span<const std::uint8_t> datagram) {
  if (datagram.size() <= 3) return std::nullopt;
  ByteReader reader(datagram);
  if (reader.u16be() != number(TftpOpcode::kReadRequest)) return std::nullopt;
  std::string_view rest = asText(reader.take(reader.left()));
  TftpReadRequest request;
  request.fileName = takeText(rest);
  takeText(rest);  // the mode
  while (!rest.empty() && !request.sizeAsked) {
    request.sizeAsked = isSizeOption(takeText(rest));
    takeText(rest);  // its value
  }
  return request;
}

std::optional<std::uint16_t> readTftpAcknowledgement(std::span<const std::uint8_t> datagram) {
  ByteReader reader(datagram);
  const bool isOne = reader.u16be() == number(TftpOpcode::kAcknowledgement);
  const std::uint16_t block = reader.u16be();
  if (!isOne || !reader.ok() || reader.left() > 0) return std::nullopt;
  return block;
}

std::optional<TftpError> readTftpError(std::span<const std::uint8_t> datagram) {
  ByteReader reader(datagram);
  if (reader.u16be() != number(TftpOpcode::kError)) return std::nullopt;
  TftpError error;
  error.code = reader.u16be();
  std::string_view rest = asText(reader.take(reader.left()));
  error.message = takeText(rest);
  return error;
}

std::string_view tftpErrorText(std::uint16_t code) {
  return code < kErrorTexts.size() ? kErrorTexts[code] : std::string_view{};
}

void TftpPacket::makeData(std::uint16_t block, std::span<const std::uint8_t> data) {
  ByteWriter writer(bytes_);
  writer.u16be(number(TftpOpcode::kData));
  writer.u16be(block);
  writer.put(data);
  length_ = writer.written();
}

void TftpPacket::makeOptionAcknowledgement(std::uint32_t fileSize) {
  ByteWriter writer(bytes_);
  writer.u16be(number(TftpOpcode::kOptionAcknowledgement));
  if (fileSize != 0) {
    writer.put("tsize");
    writer.u8(0);
    writer.put(std::to_string(fileSize));
    writer.u8(0);
  }
  length_ = writer.written();
}

}  // namespace omniset
