// How much one target can be sent. A target numbers the frames it takes with 16 bits that do not
// wrap, so a whole installation has to fit 65,535 payload-bearing frames (about 95 MB).
#pragma once

#include <cstdint>
#include <span>

namespace omniset {

constexpr std::int64_t kFrameBudget = 65'535;

// The header and the chunks of a file of that many bytes.
std::int64_t framesForFile(std::int64_t fileSize);

// The offer, the files (packages and script, sizes in bytes) and the reboot command.
std::int64_t framesForInstallation(std::span<const std::int64_t> fileSizes);

}  // namespace omniset
