// "omniset-cli disk": makes a disk from which a router installs itself.
#pragma once

#include "cli/boot_image_source.h"
#include "cli/console.h"
#include "cli/drive_argument.h"
#include "cli/options.h"
#include "media/media_services.h"

namespace omniset {

// Returns the exit status. `trace` as runInstall's. Raises BadInput, Failure and Error.
int runDisk(const DiskOptions& options, bool trace, const Console& console,
            const BootImageSource& images);

// The same on a drive that was found.
int makeDisk(const DiskOptions& options, const DriveArgument& drive, bool trace,
             const Console& console, const MediaServices& services);

}  // namespace omniset
