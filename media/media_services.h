// What the jobs that write local media need of the system.
#pragma once

#include <functional>
#include <memory>

#include "boot/boot_images.h"
#include "core/sync.h"
#include "media/format_command.h"
#include "media/volumes.h"

namespace omniset {

// Owned by the job: a thread that is left behind keeps its job alone.
struct MediaServices {
  std::shared_ptr<Volumes> volumes;
  std::shared_ptr<FormatCommand> format;
  std::function<BootImage(int number)> loadImage;
};

// The system's own; `device` as for makeSystemVolumes().
MediaServices makeMediaServices(std::function<BootImage(int number)> loadImage,
                                const DeviceOfLetter& device = {});

// Raises Failure "Canceled" once the job is asked to stop.
void requireNoStop(Event& stopEvent);

}  // namespace omniset
