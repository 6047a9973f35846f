// Told what happens, for the person in front of the target.
#pragma once

#include <cstdint>
#include <string>

#include "core/mac_address.h"

namespace omniset {

class TargetConsole {
 public:
  virtual ~TargetConsole() = default;
  virtual void say(const MacAddress& target, const std::string& sentence) = 0;
  // Called with every chunk of a file: how many of its bytes are stored.
  virtual void progress(const MacAddress& /*target*/, const std::string& /*file*/,
                        std::int32_t /*stored*/, std::int32_t /*size*/) {}
};

}  // namespace omniset
