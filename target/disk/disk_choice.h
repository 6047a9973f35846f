// Chooses the disk that an installation goes to.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "target/disk/target_disk.h"

namespace omniset {

// Takes sentences for the console.
using Say = std::function<void(const std::string&)>;

// The first disk that is large enough and that nothing hinders. When the PC was booted from a
// medium, a disk that may be it is left alone: one that holds the installer system's files in its
// first partition or as a whole. Says which disks are passed over and why. Raises Failure with a
// sentence when there is no disk left, and what a disk raises that cannot be looked at.
std::unique_ptr<TargetDisk> chooseDisk(TargetDisks& disks, bool bootedFromMedium, const Say& say);

}  // namespace omniset
