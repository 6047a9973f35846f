// Files that the jobs write to a drive.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "media/media_services.h"

namespace omniset {

// These raise Failure: "Cannot create file" (also when there is one), "Write to device failed",
// "Closing device failed".

void writeNewFile(Volumes& volumes, const std::string& path, std::span<const std::uint8_t> bytes);

// The boot image of that number; returns its bytes, which live as long as the program.
std::span<const std::uint8_t> writeImageFile(const MediaServices& services, const std::string& path,
                                             int number);

// The size of a file. Raises Failure: "Cannot open file", "Cannot get file size",
// "Closing device failed".
std::uint64_t fileSize(Volumes& volumes, const std::string& path);

}  // namespace omniset
