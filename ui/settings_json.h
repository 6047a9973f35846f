// A store of settings as text that a person can read:
//
//   {
//     "SOFTWARE\\...": {
//       "Rect X": 20,                       an integer
//       "Package Path": "C:\\",             a string
//       "Some set": ["one", "two"],         a list of strings
//       "Some bytes": {"bytes": "00ff"},    bytes
//       "Other": {"type": 2, "bytes": "…"}  any other type, or bytes that do not fit theirs
//     }
//   }
//
// Text that is not UTF-8 has each byte above 0x7F replaced by the character U+F700 + byte, as has
// text that holds such characters itself.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ui/stored_values.h"

namespace omniset {

std::string settingsJson(const StoredKeys& keys);

// Nothing when the text is anything else than the above.
std::optional<StoredKeys> parseSettingsJson(std::string_view text);

}  // namespace omniset
