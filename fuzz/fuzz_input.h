// The fuzzer's bytes, taken from the front, and the check that ends the program.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "core/byte_cursor.h"

namespace omniset::fuzz {

inline void require(bool holds) {
  if (!holds) std::abort();
}

// Yields zeros and nothing once the bytes are used up.
class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size) : reader_(std::span(data, size)) {}

  std::uint8_t u8() { return reader_.left() < 1 ? std::uint8_t{0} : reader_.u8(); }
  std::uint16_t u16() {
    const std::uint8_t low = u8();
    return static_cast<std::uint16_t>(low | u8() << 8);
  }
  std::span<const std::uint8_t> bytes(std::size_t count) {
    return reader_.take(std::min(count, reader_.left()));
  }
  std::size_t left() const { return reader_.left(); }

 private:
  ByteReader reader_;
};

}  // namespace omniset::fuzz
