// IPv4 addresses are 32-bit values in network byte order: the first octet is in the lowest byte.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace omniset {

constexpr std::uint32_t ipv4(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d) {
  return a | std::uint32_t{b} << 8 | std::uint32_t{c} << 16 | std::uint32_t{d} << 24;
}

// 255.255.255.255, the limited broadcast address.
constexpr std::uint32_t kBroadcastAddress = 0xFFFFFFFF;

// "192.168.88.1"
std::string dottedQuad(std::uint32_t address);

// Reads four decimal octets, each of one to three digits and at most 255, and nothing else.
std::optional<std::uint32_t> parseDottedQuad(std::string_view text);

}  // namespace omniset
