// A bar that holds bands of other controls.
#pragma once

#include "ui/toolkit/window.h"

namespace omniset {

class Rebar : public Window {
 public:
  // Raises Error "CreateWindowEx Rebar". WS_CHILD and WS_VISIBLE are added to the plan's style.
  void create(WindowPlan plan);
};

}  // namespace omniset
