#include "ui/workflow/window_placement.h"

#include <algorithm>

namespace omniset {

WindowRectangle placedWindow(const WindowGeometry& stored, std::int32_t width, ScreenSize screen) {
  WindowRectangle place{std::max(stored.x, 0), std::max(stored.y, 0), width, stored.height};
  const bool shrank = screen.width < stored.screenWidth || screen.height < stored.screenHeight;
  if (!shrank) return place;
  place.height = std::min(place.height, screen.height);
  // What the store holds may be any number, also one whose sums are too large.
  const std::int64_t lowest = std::int64_t{screen.height} - place.height;
  const std::int64_t rightmost = std::int64_t{screen.width} - place.width;
  place.x = static_cast<std::int32_t>(std::min<std::int64_t>(place.x, rightmost));
  place.y = static_cast<std::int32_t>(std::min<std::int64_t>(place.y, lowest));
  return place;
}

}  // namespace omniset
