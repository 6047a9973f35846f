// What can be told of disks and image files on Linux.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "media/volumes.h"

namespace omniset {

// Of a block device or of an image file; 0 when it cannot be read.
std::uint64_t driveBytes(const std::string& path);

// A little less than 2 GB, where every BIOS and loader reads FAT16. The rest of a larger disk stays
// free.
constexpr std::uint64_t kMostUsed = std::uint64_t{2047} << 20;

// Such as "/dev/sda".
std::vector<std::string> diskPaths();
// As Volumes::driveType(): neither for the disk that the system runs from.
std::uint32_t typeOfDisk(const std::string& path);

DriveFacts readDriveFacts(const std::string& path);

}  // namespace omniset
