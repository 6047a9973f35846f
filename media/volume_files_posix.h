// Files in the root folder of a FAT volume that is not mounted, by the programs of mtools.
#pragma once

#include <string>

#include "media/volumes.h"

namespace omniset {

// The volume covers the whole of `device`, a block device or an image file. kNew returns null when
// there is such a file, or no volume; whatever else is wrong the first read, or write or close,
// tells.
DevicePtr createFileOnVolume(const std::string& device, const std::string& name,
                             Volumes::Creation creation);
DevicePtr openFileOnVolume(const std::string& device, const std::string& name);

}  // namespace omniset
