// "omniset-cli routers": lists the routers that announce themselves.
#pragma once

#include "cli/console.h"
#include "cli/options.h"

namespace omniset {

// Returns the exit status. Raises BadInput and Failure.
int runRouters(const RoutersOptions& options, const Console& console);

}  // namespace omniset
