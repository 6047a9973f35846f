#include "ui/toolkit/instance.h"

namespace omniset {

namespace {
HINSTANCE instanceInUse = nullptr;
}

void setModuleInstance(HINSTANCE instance) {
  instanceInUse = instance;
}

HINSTANCE moduleInstance() {
  if (instanceInUse == nullptr) instanceInUse = GetModuleHandleA(nullptr);
  return instanceInUse;
}

}  // namespace omniset
