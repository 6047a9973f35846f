// "omniset-cli install": installs routers.
#pragma once

#include <string>

#include "cli/boot_worker.h"
#include "cli/console.h"
#include "cli/install_run.h"
#include "cli/options.h"

namespace omniset {

// Returns the exit status. `trace` says that trace lines go to standard error, between which no
// line can be redrawn. Raises BadInput and Failure.
int runInstall(const InstallOptions& options, bool trace, const Console& console,
               const BootImageSource& images);

// What the run came to, in a sentence. `hasBooted`: a PC was given an address to boot with.
std::string summary(const InstallOptions& options, const InstallOutcome& outcome,
                    const std::string& adapterName, bool hasBooted = false);

}  // namespace omniset
