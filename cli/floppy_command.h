// "omniset-cli floppy": makes a boot floppy.
#pragma once

#include "cli/boot_image_source.h"
#include "cli/console.h"
#include "cli/drive_argument.h"
#include "cli/options.h"
#include "media/media_services.h"

namespace omniset {

// Returns the exit status. `trace` as runInstall's. Raises BadInput, Failure and Error.
int runFloppy(const FloppyOptions& options, bool trace, const Console& console,
              const BootImageSource& images);

// The same in a drive that was found.
int makeFloppy(const FloppyOptions& options, const DriveArgument& drive, bool trace,
               const Console& console, const MediaServices& services);

}  // namespace omniset
