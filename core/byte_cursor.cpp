#include "core/byte_cursor.h"

#include <algorithm>

namespace omniset {

std::span<const std::uint8_t> ByteReader::take(std::size_t count) {
  if (!ok_ || count > left()) {
    ok_ = false;
    return {};
  }
  at_ += count;
  return bytes_.subspan(at_ - count, count);
}

std::uint8_t ByteReader::u8() {
  const auto b = take(1);
  return b.empty() ? std::uint8_t{0} : b[0];
}

std::uint16_t ByteReader::u16le() {
  const auto b = take(2);
  if (b.empty()) return 0;
  return static_cast<std::uint16_t>(b[0] | b[1] << 8);
}

std::uint32_t ByteReader::u32le() {
  const auto b = take(4);
  if (b.empty()) return 0;
  return b[0] | std::uint32_t{b[1]} << 8 | std::uint32_t{b[2]} << 16 | std::uint32_t{b[3]} << 24;
}

std::uint16_t ByteReader::u16be() {
  const auto b = take(2);
  if (b.empty()) return 0;
  return static_cast<std::uint16_t>(b[0] << 8 | b[1]);
}

std::uint32_t ByteReader::u32be() {
  const auto b = take(4);
  if (b.empty()) return 0;
  return std::uint32_t{b[0]} << 24 | std::uint32_t{b[1]} << 16 | std::uint32_t{b[2]} << 8 | b[3];
}

std::span<std::uint8_t> ByteWriter::room(std::size_t count) {
  if (!ok_ || count > bytes_.size() - at_) {
    ok_ = false;
    return {};
  }
  at_ += count;
  return bytes_.subspan(at_ - count, count);
}

void ByteWriter::put(std::span<const std::uint8_t> source) {
  const auto to = room(source.size());
  if (!to.empty()) std::copy(source.begin(), source.end(), to.begin());
}

void ByteWriter::put(std::string_view text) {
  put(std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
}

void ByteWriter::u8(std::uint8_t value) {
  put(std::span(&value, 1));
}

void ByteWriter::u16le(std::uint16_t value) {
  const std::uint8_t b[] = {static_cast<std::uint8_t>(value),
                            static_cast<std::uint8_t>(value >> 8)};
  put(b);
}

void ByteWriter::u32le(std::uint32_t value) {
  const std::uint8_t b[] = {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8),
                            static_cast<std::uint8_t>(value >> 16),
                            static_cast<std::uint8_t>(value >> 24)};
  put(b);
}

void ByteWriter::u16be(std::uint16_t value) {
  const std::uint8_t b[] = {static_cast<std::uint8_t>(value >> 8),
                            static_cast<std::uint8_t>(value)};
  put(b);
}

}  // namespace omniset
