// The module that windows, dialogs and resources belong to.
#pragma once

#include <windows.h>

namespace omniset {

// To be told once, before the first window; without that it is the program's own module.
void setModuleInstance(HINSTANCE instance);
HINSTANCE moduleInstance();

}  // namespace omniset
