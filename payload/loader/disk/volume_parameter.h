// What the installer system is told of the volume that it was started from.
#pragma once

#include <cstdint>

#include "payload/loader/common/configuration.h"

namespace omniset::loader {

// Appends " omniset.volume=" and the volume's serial number, with eight hexadecimal digits in
// capital letters. Returns false when there is no room.
bool appendVolume(CommandLine& commandLine, std::uint32_t serialNumber);

}  // namespace omniset::loader
