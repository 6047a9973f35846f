#include "core/ipv4_address.h"

#include <charconv>

#include "core/format_text.h"

namespace omniset {

std::string dottedQuad(std::uint32_t address) {
  return formatText("%u.%u.%u.%u", address & 0xFF, address >> 8 & 0xFF, address >> 16 & 0xFF,
                    address >> 24);
}

std::optional<std::uint32_t> parseDottedQuad(std::string_view text) {
  std::uint32_t address = 0;
  const char* at = text.data();
  const char* const end = at + text.size();
  for (int shift = 0; shift < 32; shift += 8) {
    if (shift > 0 && (at == end || *at++ != '.')) return std::nullopt;
    std::uint8_t octet = 0;
    const auto [next, error] = std::from_chars(at, end, octet);
    if (error != std::errc{} || next - at > 3) return std::nullopt;
    address |= std::uint32_t{octet} << shift;
    at = next;
  }
  if (at != end) return std::nullopt;
  return address;
}

}  // namespace omniset
