// Formats a drive with the system's own command.
#pragma once

#include "media/media_services.h"

namespace omniset {

// Waits for the command, at most five minutes. Raises Failure "Format failed" when the wait fails,
// "Format timeout" when the command does not end and was ended, "Canceled" in the same way when the
// job is asked to stop, "Closing device failed", and what FormatCommand raises; Error
// "TerminateProcess". Whether the command succeeded is not asked: what follows finds out.
void formatDrive(const MediaServices& services, char letter, Event& stopEvent);

// Twice where the first format does not yet find the disk without its old partition table: on
// Windows XP and 2003.
void formatDriveForGood(const MediaServices& services, char letter, Event& stopEvent);

}  // namespace omniset
