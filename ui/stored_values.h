// A store of settings held in memory.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "ui/caseless_map.h"
#include "ui/registry_keys.h"

namespace omniset {

struct StoredValue {
  RegistryType type = RegistryType::kBytes;
  std::vector<std::uint8_t> data;

  bool operator==(const StoredValue&) const = default;
};

using StoredKey = CaselessMap<StoredValue>;
// By path, whose steps are separated by backslashes.
using StoredKeys = CaselessMap<StoredKey>;

}  // namespace omniset
