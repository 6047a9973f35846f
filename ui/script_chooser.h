// The system's file chooser for a configuration script.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace omniset {

// Nothing when the operator cancels.
std::optional<std::string> chooseScriptFile(HWND owner);

}  // namespace omniset
