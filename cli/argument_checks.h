// Makes options of what was written. Each raises BadInput with a sentence that says what to do.
#pragma once

#include "cli/options.h"
#include "cli/written_arguments.h"

namespace omniset {

PackagesOptions checkedPackages(const WrittenArguments& w);
RoutersOptions checkedRouters(const WrittenArguments& w);
InstallOptions checkedInstall(const WrittenArguments& w);
BootOptions checkedBoot(const WrittenArguments& w);
DrivesOptions checkedDrives(const WrittenArguments& w);
DiskOptions checkedDisk(const WrittenArguments& w);
FloppyOptions checkedFloppy(const WrittenArguments& w);

}  // namespace omniset
