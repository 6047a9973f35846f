// Numbers in formats of the PC, low byte first as its processors have them in memory.
#pragma once

#include <cstdint>
#include <cstring>

namespace omniset::loader {

template <typename Number>
Number numberAt(const std::uint8_t* bytes) {
  Number number;
  std::memcpy(&number, bytes, sizeof number);
  return number;
}

template <typename Number>
void putNumber(std::uint8_t* bytes, Number number) {
  std::memcpy(bytes, &number, sizeof number);
}

}  // namespace omniset::loader
