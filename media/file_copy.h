// Copies files to a drive, and the reading that goes with it.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "core/sync.h"
#include "media/volumes.h"

namespace omniset {

// Fills as much as the device still has; less only at its end. Raises Failure "Read from device
// failed".
std::size_t readFully(Device& device, std::span<std::uint8_t> into);

// Over a file of that name if there is one. Raises Failure "Cannot copy package" whatever failed,
// and "Canceled".
void copyFile(Volumes& volumes, const std::string& source, const std::string& target,
              Event& stopEvent);

}  // namespace omniset
