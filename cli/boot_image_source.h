// Where the commands take the boot images from.
#pragma once

#include <functional>

#include "boot/boot_images.h"

namespace omniset {

// Gives the boot images by their numbers, as loadBootImage().
using BootImageSource = std::function<BootImage(int number)>;

}  // namespace omniset
