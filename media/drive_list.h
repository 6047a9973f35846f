// The drives that may be installed onto.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "media/volumes.h"

namespace omniset {

struct DriveEntry {
  std::string root;       // drive letter, colon, backslash; elsewhere the disk's path
  std::int32_t type = 0;  // kRemovableDrive or kFixedDrive, as of install/router_record.h
};

// Removable and fixed drives but for the system's own and drive A, in the system's order. Raises
// Error "GetSystemDirectory" and "GetLogicalDriveStrings".
std::vector<DriveEntry> enumerateDrives(Volumes& volumes);

}  // namespace omniset
