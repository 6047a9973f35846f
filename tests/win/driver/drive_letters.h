// The drives of this computer, which come and go as a test wants, by Wine's own way to define them.
#pragma once

#include <windows.h>
// After windows.h, whose types it uses.
#include <dbt.h>

#include <string>

namespace omniset::test {

// The drive's folder, and its raw volume, are these paths outside Windows; `type` is DRIVE_FIXED or
// DRIVE_REMOVABLE. Raises WindowFault.
void attachDrive(char letter, UINT type, const std::string& folder, const std::string& image);
// Nothing when there is no such drive.
void detachDrive(char letter);

// Tells a window, as Windows would, that the drive has come or gone: DBT_DEVICEARRIVAL or
// DBT_DEVICEREMOVECOMPLETE. Wine tells no window of drives that are defined in this way.
void announceDrive(HWND window, WPARAM event, char letter);

}  // namespace omniset::test
