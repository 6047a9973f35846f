// From files to a kernel in memory, ready to be started.
#pragma once

#include <cstdint>

#include "payload/loader/common/configuration.h"
#include "payload/loader/common/kernel_header.h"
#include "payload/loader/common/memory_map.h"

namespace omniset::loader {

// Each of these fails the loader when something is wrong, and says what.

// Loads the file to the range's start and returns its size.
std::uint32_t loadFile(const char* name, const MemoryRange& range);

void loadConfiguration(const char* name, BootConfiguration& configuration);

// Loads kernel and RAM disk to their places. The command line is for the kernel alone: what asks
// something of a loader there (vga=, mem=) is not done.
void loadSystem(const BootConfiguration& configuration, const MemoryMap& map);

void requireKernel(const char* name, const KernelHeader& header, std::uint32_t fileSize);

// Puts the header with its parameters, and the command line, to their places. The rest of the
// real-mode part is there.
void finishSetup(KernelHeader& header, const char* commandLine, const MemoryRange& ramDisk);

}  // namespace omniset::loader
