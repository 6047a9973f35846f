// What a disk can hold once it is prepared for an installation.
#pragma once

#include <cstdint>
#include <string>

#include "target/disk/installation_mark.h"

namespace omniset {

// Raises Failure with a sentence unless the files and their mark have room on a disk of so many
// sectors, in its new volume and in the root folder of that.
void requireCapacity(const std::string& diskName, std::uint64_t diskSectors,
                     const MarkedFiles& files);

}  // namespace omniset
