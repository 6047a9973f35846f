// "omniset-cli boot": answers the boot requests of PCs, and serves them the boot images.
#pragma once

#include "cli/boot_worker.h"
#include "cli/console.h"
#include "cli/options.h"

namespace omniset {

// Goes on until it is interrupted; returns the exit status. Raises BadInput and Failure.
int runBoot(const BootOptions& options, const Console& console, const BootImageSource& images);

}  // namespace omniset
