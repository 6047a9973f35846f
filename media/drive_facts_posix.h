// What Linux tells of disks: from /sys/block, /proc/self/mountinfo and the disks' first sectors.
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

// The names of all disks in /sys/block that are devices, sorted, such as "/dev/sda"; no CDs, no
// floppies.
std::vector<std::string> diskPaths();
bool isRemovable(const std::string& path);
// The system runs from it, or from a volume that lies on it.
bool isSystemDisk(const std::string& path);

DriveFacts readDriveFacts(const std::string& path);

}  // namespace omniset
