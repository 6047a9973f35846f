// The drive that the operator names with --device. A seam: on Windows a drive letter of the list,
// elsewhere a block device or an image file, for which a letter stands.
#pragma once

#include <string>

#include "media/volumes.h"

namespace omniset {

struct DriveArgument {
  char letter = 0;        // upper-case
  std::string root;       // as Volumes::facts() takes it
  DeviceOfLetter device;  // for makeMediaServices()
};

// These raise BadInput for what is no drive of that kind or is not there.
DriveArgument diskArgument(const std::string& written);
// An image file that is not there is created when `mayCreate`.
DriveArgument floppyArgument(const std::string& written, bool mayCreate);

}  // namespace omniset
