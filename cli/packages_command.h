// "omniset-cli packages": lists the packages of a folder.
#pragma once

#include "cli/console.h"
#include "cli/options.h"

namespace omniset {

// Returns the exit status. Raises BadInput.
int runPackages(const PackagesOptions& options, const Console& console);

}  // namespace omniset
