// An Ethernet hardware address.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace omniset {

struct MacAddress {
  std::array<std::uint8_t, 6> bytes{};

  // Bytewise order.
  auto operator<=>(const MacAddress&) const = default;

  // All zeros: stands for "anybody".
  bool isWildcard() const { return *this == MacAddress{}; }

  // "02:00:00:01:02:0A": upper-case hexadecimal, colon-separated.
  std::string text() const;

  // Reads six two-digit hexadecimal numbers in either case, separated by colons or by hyphens.
  static std::optional<MacAddress> parse(std::string_view text);
};

}  // namespace omniset
