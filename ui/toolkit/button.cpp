#include "ui/toolkit/button.h"

namespace omniset {

void Button::create(WindowPlan plan) {
  plan.style |= WS_CHILD | WS_VISIBLE;
  createControl("BUTTON", plan, "CreateWindow BUTTON");
}

}  // namespace omniset
