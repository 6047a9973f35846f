// The drives that disks can be made of, as a table for people.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "media/drive_list.h"
#include "media/volumes.h"

namespace omniset {

struct DriveRow {
  DriveEntry drive;
  DriveFacts facts;
};

// A line of titles and a line per drive, in aligned columns.
std::string driveTable(const std::vector<DriveRow>& rows);

}  // namespace omniset
