// The mark of an installation on its volume. Raises what the volume raises.
#pragma once

#include <optional>
#include <vector>

#include "target/disk/installation_mark.h"
#include "target/disk/target_disk.h"

namespace omniset {

// None when the mark is not there, or not one of a complete installation.
std::optional<MarkedFiles> readMark(Volume& volume, const std::vector<VolumeEntry>& entries);

// From when this returns no installation counts on the volume, until writeMark() has returned.
void writeBegunMark(Volume& volume);

// The mark gets its name when it and all else that was written to the volume is on the medium: it
// is never there without the files.
void writeMark(Volume& volume, const MarkedFiles& files);

}  // namespace omniset
