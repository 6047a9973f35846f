// Turns what the operator asked for into what every router gets.
#pragma once

#include <string>
#include <vector>

#include "cli/install_run.h"
#include "cli/options.h"
#include "packages/package_catalogue.h"

namespace omniset {

struct InstallPlan {
  InstallRunOptions run;
  std::string packages;               // "system 2.9, routing 2.9", in the order of sending
  std::vector<std::string> warnings;  // sentences
};

// The catalogue has scanned the options' folder. Raises BadInput for an unknown package, a missing
// dependency or an unreadable script.
InstallPlan planInstallation(const InstallOptions& options, PackageCatalogue& catalogue);

}  // namespace omniset
