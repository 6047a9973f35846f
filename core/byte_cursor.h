// Bounds-checked reading and writing of wire and file formats. A cursor that would leave its bytes
// stops, yields zeros (or writes nothing) from then on, and says so once, at the end, in ok().
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace omniset {

class ByteReader {
 public:
  explicit ByteReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  std::uint8_t u8();
  std::uint16_t u16le();
  std::uint32_t u32le();
  std::uint16_t u16be();
  std::uint32_t u32be();
  // The next `count` bytes, in place; empty when there are not that many.
  std::span<const std::uint8_t> take(std::size_t count);

  std::size_t left() const { return bytes_.size() - at_; }
  bool ok() const { return ok_; }

 private:
  std::span<const std::uint8_t> bytes_;
  std::size_t at_ = 0;
  bool ok_ = true;
};

class ByteWriter {
 public:
  explicit ByteWriter(std::span<std::uint8_t> bytes) : bytes_(bytes) {}

  void u8(std::uint8_t value);
  void u16le(std::uint16_t value);
  void u32le(std::uint32_t value);
  void u16be(std::uint16_t value);
  void put(std::span<const std::uint8_t> source);
  void put(std::string_view text);

  std::size_t written() const { return at_; }
  bool ok() const { return ok_; }

 private:
  std::span<std::uint8_t> room(std::size_t count);

  std::span<std::uint8_t> bytes_;
  std::size_t at_ = 0;
  bool ok_ = true;
};

// Bytes seen as characters.
inline std::string_view asText(std::span<const std::uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace omniset
