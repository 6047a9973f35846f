// Letters of ASCII.
#pragma once

namespace omniset::loader {

constexpr char capital(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

}  // namespace omniset::loader
