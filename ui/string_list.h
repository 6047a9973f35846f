// Lists of strings as the store of settings holds them: each string with its NUL, and a NUL behind
// the last. An empty string would look like the end, so there is none in a list.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace omniset {

// Leaves out empty strings; a string ends at its first NUL.
std::vector<std::uint8_t> packedStrings(const std::vector<std::string>& strings);

// Takes any bytes: the list ends at the first empty string or with the bytes, and a last string may
// lack its NUL.
std::vector<std::string> splitStrings(std::span<const std::uint8_t> bytes);

}  // namespace omniset
