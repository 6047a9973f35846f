// Feeds any text to the reader of settings files; what it takes must come back from its own text.
// Then stores the same bytes as a value, under names that are made of them too.
#include <string>

#include "fuzz_input.h"
#include "ui/settings_json.h"

namespace {

using namespace omniset;
using fuzz::FuzzInput;
using fuzz::require;

void requireReadable(const StoredKeys& keys) {
  const auto read = parseSettingsJson(settingsJson(keys));
  require(read && *read == keys);
}

void readText(const std::uint8_t* data, std::size_t size) {
  const auto keys = parseSettingsJson(asText(std::span(data, size)));
  if (keys) requireReadable(*keys);
}

void storeValue(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  StoredKeys keys;
  while (input.left() > 0) {
    const RegistryType type{input.u8()};
    const std::string name(asText(input.bytes(input.u8() % 8)));
    const auto bytes = input.bytes(input.u8());
    keys[name][name] = {type, {bytes.begin(), bytes.end()}};
  }
  requireReadable(keys);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  readText(data, size);
  storeValue(data, size);
  return 0;
}
