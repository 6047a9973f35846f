// The text of any window.
#pragma once

#include <windows.h>

#include <string>

namespace omniset {

inline std::string windowText(HWND window) {
  std::string text(static_cast<size_t>(GetWindowTextLengthA(window)) + 1, '\0');
  const int copied = GetWindowTextA(window, text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<size_t>(copied));
  return text;
}

}  // namespace omniset
