// The CRC-32 of Ethernet (IEEE 802.3), over bytes that come in pieces.
#pragma once

#include <cstdint>
#include <span>

namespace omniset {

class Crc32 {
 public:
  void add(std::span<const std::uint8_t> bytes);
  std::uint32_t value() const { return ~state_; }

 private:
  std::uint32_t state_ = 0xFFFFFFFF;
};

}  // namespace omniset
