// A push button for windows built in code.
#pragma once

#include "ui/toolkit/window.h"

namespace omniset {

class Button : public Window {
 public:
  // Raises Error "CreateWindow BUTTON". WS_CHILD and WS_VISIBLE are added to the plan's style.
  void create(WindowPlan plan);
};

}  // namespace omniset
