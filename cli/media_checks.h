// What a command looks at before it erases a drive, and what it says of that.
#pragma once

#include <ostream>
#include <string>

#include "cli/drive_argument.h"
#include "media/volumes.h"

namespace omniset {

// Raises BadInput with the obstacle's sentence, unless that is empty.
void refuse(const std::string& obstacle);

// Tells what is erased, `/dev/sdb (512 MB, label "KESTRIX"), contents: FAT16 volume`, and what is
// written; unless `yes`, that nothing is.
void tellPlan(const DriveArgument& drive, const DriveFacts& facts, const std::string& toWrite,
              bool yes, std::ostream& err);

}  // namespace omniset
