// Where a loader's files come from: one at a time, read once from front to end.
#pragma once

#include <cstdint>

#include "payload/loader/common/configuration.h"

namespace omniset::loader {

// All of them fail the loader when they cannot do their work.
// The name has room in a FileName, and stays where it is until the file is closed.
void openFile(const char* name);
// Puts the next bytes to kTransferAt, at most kTransferRoom. Returns their number: 0 at the end.
std::uint32_t readFile();
void closeFile();

}  // namespace omniset::loader
