#include "core/file_name.h"

#include <algorithm>
#include <array>

namespace omniset {

namespace {

constexpr std::array<std::string_view, 4> kDevices{"con", "prn", "aux", "nul"};
constexpr std::array<std::string_view, 2> kNumberedDevices{"com", "lpt"};

constexpr std::size_t kLongNamePart = 13;  // characters in an entry

template <std::size_t count>
bool isOneOf(std::string_view word, const std::array<std::string_view, count>& words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

char folded(char c) {
  const auto byte = static_cast<unsigned char>(c);
  const bool isLatin1Capital = byte >= 0xC0 && byte <= 0xDE && byte != 0xD7;
  return (c >= 'A' && c <= 'Z') || isLatin1Capital ? static_cast<char>(byte + 0x20) : c;
}

// Whatever follows their first dot, these are devices on some systems.
bool isDevice(std::string_view name) {
  const std::string stem = foldedFileName(name.substr(0, name.find('.')));
  if (isOneOf(stem, kDevices)) return true;
  return stem.size() == 4 && isDigit(stem[3]) && isOneOf(stem.substr(0, 3), kNumberedDevices);
}

bool isShortForm(std::string_view name) {
  const std::size_t tilde = name.find('~');
  return tilde != std::string_view::npos && tilde + 1 < name.size() && isDigit(name[tilde + 1]);
}

}  // namespace

bool isSafeFileName(std::string_view name) {
  if (name.empty() || name.size() > kLongestFileName || name[0] == '.') return false;
  return std::none_of(name.begin(), name.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F || c == '/' || c == '\\' || c == ':';
  });
}

bool isFatFileName(std::string_view name) {
  return isSafeFileName(name) && name.find_first_of("<>\"|?*") == std::string_view::npos &&
         name.back() != '.' && name.back() != ' ' && !isDevice(name) && !isShortForm(name);
}

// Every name may need its long form.
std::size_t fatEntriesOf(std::string_view name) {
  return 1 + (name.size() + kLongNamePart - 1) / kLongNamePart;
}

bool isSameFileName(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                            [](char x, char y) { return folded(x) == folded(y); });
}

std::string foldedFileName(std::string_view name) {
  std::string text(name);
  std::transform(text.begin(), text.end(), text.begin(), folded);
  return text;
}

bool isPackageFileName(std::string_view name) {
  return foldedFileName(name).ends_with(".bdl");
}

}  // namespace omniset
