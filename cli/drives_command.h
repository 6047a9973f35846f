// "omniset-cli drives": lists the drives that disks can be made of.
#pragma once

#include "cli/console.h"
#include "cli/options.h"
#include "media/volumes.h"

namespace omniset {

// Returns the exit status. Raises Error.
int runDrives(const DrivesOptions& options, const Console& console, Volumes& volumes);

}  // namespace omniset
