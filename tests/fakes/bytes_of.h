// The bytes of a text, as tests write and compare them.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace omniset::test {

using Bytes = std::vector<std::uint8_t>;

inline Bytes bytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

}  // namespace omniset::test
