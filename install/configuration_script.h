// The script "autorun.scr" that a target runs once on its first start.
#pragma once

#include <string>

#include "core/temp_file.h"
#include "install/router_record.h"
#include "link/link_frame.h"

namespace omniset {

// The script that the record's address, netmask, gateway and baud rate make; empty without an
// address. The baud rate belongs to the address block and is not written without one.
std::string generatedScript(const RouterRecord& record);

// Writes the script that the record's flags ask for into a new temporary file and returns its path;
// the caller deletes the file. Raises Error when no temporary file can be had, and Failure with
// "Could not open temporary file", "Could not open script", "Could not read script",
// "Could not write file" or "Could not write script"; no file is left then.
std::string buildScript(const RouterRecord& record, TempFiles& tempFiles);

}  // namespace omniset
