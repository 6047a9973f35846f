// TFTP datagrams as clients send them.
#pragma once

#include <cstdint>
#include <string>

#include "core/byte_cursor.h"
#include "tests/fakes/bytes_of.h"

namespace omniset::test {

// `options` are names and values, each with its zero byte.
inline Bytes readRequest(const std::string& name, const std::string& options = {}) {
  using namespace std::string_literals;
  return bytesOf("\0\1"s + name + "\0octet\0"s + options);
}

inline Bytes acknowledgement(std::uint16_t block) {
  return {0, 4, static_cast<std::uint8_t>(block >> 8), static_cast<std::uint8_t>(block)};
}

// A data datagram of the content's block, counted from 1.
inline Bytes dataBlock(const Bytes& content, std::size_t block) {
  const std::size_t offset = (block - 1) * 512;
  Bytes datagram{0, 3, static_cast<std::uint8_t>(block >> 8), static_cast<std::uint8_t>(block)};
  const std::size_t end = std::min(content.size(), offset + 512);
  datagram.insert(datagram.end(), content.begin() + static_cast<std::ptrdiff_t>(offset),
                  content.begin() + static_cast<std::ptrdiff_t>(end));
  return datagram;
}

// Content of which no two blocks are alike.
inline Bytes imageOf(std::size_t length) {
  Bytes content(length);
  for (std::size_t i = 0; i < length; ++i) {
    content[i] = static_cast<std::uint8_t>(i * 7 + (i >> 9) * 13 + (i >> 17));
  }
  return content;
}

}  // namespace omniset::test
