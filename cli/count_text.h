// Numbers in sentences.
#pragma once

#include <cstdint>
#include <string>

namespace omniset {

// "1 router", "2 routers".
inline std::string countText(std::int64_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace omniset
