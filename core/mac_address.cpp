#include "core/mac_address.h"

#include <charconv>

#include "core/format_text.h"

namespace omniset {

namespace {
constexpr std::size_t kTextLength = 17;
}

std::string MacAddress::text() const {
  return formatText("%02X:%02X:%02X:%02X:%02X:%02X", bytes[0], bytes[1], bytes[2], bytes[3],
                    bytes[4], bytes[5]);
}

std::optional<MacAddress> MacAddress::parse(std::string_view text) {
  if (text.size() != kTextLength) return std::nullopt;
  const char separator = text[2];
  if (separator != ':' && separator != '-') return std::nullopt;
  MacAddress mac;
  for (std::size_t i = 0; i < mac.bytes.size(); ++i) {
    const char* first = text.data() + 3 * i;
    const auto [end, error] = std::from_chars(first, first + 2, mac.bytes[i], 16);
    if (error != std::errc{} || end != first + 2) return std::nullopt;
    if (i > 0 && first[-1] != separator) return std::nullopt;
  }
  return mac;
}

}  // namespace omniset
