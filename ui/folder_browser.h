// The system's folder chooser, which tells of each folder how many packages it holds.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace omniset {

// Opens with the present folder selected. Nothing when the operator cancels.
std::optional<std::string> browseFolder(HWND owner, const std::string& present);

}  // namespace omniset
