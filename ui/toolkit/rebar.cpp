#include "ui/toolkit/rebar.h"

namespace omniset {

void Rebar::create(WindowPlan plan) {
  plan.style |= WS_CHILD | WS_VISIBLE;
  createControl("ReBarWindow32", plan, "CreateWindowEx Rebar");
}

}  // namespace omniset
