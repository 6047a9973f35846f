#include "target/disk/crc32.h"

#include <array>

namespace omniset {

namespace {

using Table = std::array<std::uint32_t, 256>;

// Made when first used: as a constant it would be a kilobyte that does not compress.
Table makeTable() {
  Table table{};
  for (std::uint32_t i = 0; i < table.size(); ++i) {
    std::uint32_t entry = i;
    for (int bit = 0; bit < 8; ++bit) entry = (entry >> 1) ^ (entry & 1 ? 0xEDB88320 : 0);
    table[i] = entry;
  }
  return table;
}

}  // namespace

void Crc32::add(std::span<const std::uint8_t> bytes) {
  static const Table table = makeTable();
  std::uint32_t state = state_;
  for (const std::uint8_t byte : bytes) state = table[(state ^ byte) & 0xFF] ^ (state >> 8);
  state_ = state;
}

}  // namespace omniset
