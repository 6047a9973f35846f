#include "ui/string_list.h"

#include <algorithm>

#include <string_view>

#include "core/byte_cursor.h"

namespace omniset {

std::vector<std::uint8_t> packedStrings(const std::vector<std::string>& strings) {
  std::vector<std::uint8_t> bytes;
  for (const std::string& string : strings) {
    const std::string_view text = string.c_str();
    if (text.empty()) continue;
    bytes.insert(bytes.end(), text.begin(), text.end());
    bytes.push_back(0);
  }
  bytes.push_back(0);
  return bytes;
}

std::vector<std::string> splitStrings(std::span<const std::uint8_t> bytes) {
  std::vector<std::string> strings;
  std::string_view left = asText(bytes);
  while (!left.empty() && left.front() != '\0') {
    const std::string_view text = left.substr(0, left.find('\0'));
    strings.emplace_back(text);
    left.remove_prefix(std::min(left.size(), text.size() + 1));
  }
  return strings;
}

}  // namespace omniset
