#include "media/media_services.h"

#include <utility>

#include "core/error.h"

namespace omniset {

MediaServices makeMediaServices(std::function<BootImage(int number)> loadImage,
                                const DeviceOfLetter& device) {
  return {makeSystemVolumes(device), makeSystemFormatCommand(device), std::move(loadImage)};
}

void requireNoStop(Event& stopEvent) {
  if (stopEvent.wait(0)) throw Failure("Canceled");
}

}  // namespace omniset
