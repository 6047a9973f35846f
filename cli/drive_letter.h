// Drive letters as operators write them.
#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "media/volumes.h"

namespace omniset {

// The upper-case letter of "e:", "E:\" or "E"; nothing for other texts.
constexpr std::optional<char> driveLetter(std::string_view written) {
  constexpr std::array<std::string_view, 4> kBehind{"", ":", ":\\", ":/"};
  if (written.empty()) return std::nullopt;
  const std::string_view behind = written.substr(1);
  if (std::find(kBehind.begin(), kBehind.end(), behind) == kBehind.end()) return std::nullopt;
  const char letter = written.front();
  if (letter >= 'A' && letter <= 'Z') return letter;
  if (letter >= 'a' && letter <= 'z') return static_cast<char>(letter - 'a' + 'A');
  return std::nullopt;
}

// "E:\"
inline std::string driveRoot(char letter) {
  return {letter, ':', '\\'};
}

// Raises BadInput unless it is among the drives that disks can be made of.
void requireDisk(char letter, Volumes& volumes);

}  // namespace omniset
