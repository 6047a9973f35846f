// The windows that a process shows on the desktop.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tests/win/driver/process.h"

namespace omniset::test {

// All visible ones.
std::vector<HWND> topWindows(const Process& process);

// Waits for a visible window with this caption; raises WindowFault also when the process ends.
HWND awaitTopWindow(const Process& process, const std::string& caption,
                    Milliseconds limit = kPatience);

}  // namespace omniset::test
