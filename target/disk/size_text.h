// Sizes of disks as people say them.
#pragma once

#include <cstdint>
#include <string>

namespace omniset {

constexpr std::uint64_t kSectorsPerMegabyte = 2048;

// "64 MB" of 1048576 bytes each, or "40 GB" of 1024 of those, rounded down.
std::string sizeText(std::uint64_t sectors);

}  // namespace omniset
