// Where the main window goes when the program starts.
#pragma once

#include <cstdint>

#include "ui/settings.h"

namespace omniset {

// In pixels.
struct ScreenSize {
  std::int32_t width;
  std::int32_t height;
};

struct WindowRectangle {
  std::int32_t x;
  std::int32_t y;
  std::int32_t width;
  std::int32_t height;

  bool operator==(const WindowRectangle&) const = default;
};

// The place that was stored, pulled back into a screen that has become smaller since; a screen that
// has not leaves it as it is, even if a part of it cannot be seen.
WindowRectangle placedWindow(const WindowGeometry& stored, std::int32_t width, ScreenSize screen);

}  // namespace omniset
