// Memory by its physical address, beyond what real mode reaches too.
#pragma once

#include <cstdint>

#include "payload/loader/common/memory_map.h"

namespace omniset::loader {

// What the BIOS tells; nothing above 16 MB where its copying does not come so far. Fails when too
// little is free below 640 KB. Writes to kTransferAt.
void surveyMemory(MemoryMap& map);

// Copy upwards, so that a move to a lower address may overlap. Odd counts are rounded up: one byte
// more is written then. `object` lies in the loader's own memory. A copy that the BIOS refuses
// fails.
void copyMemory(std::uint32_t to, std::uint32_t from, std::uint32_t count);
void readMemory(void* object, std::uint32_t from, std::uint32_t count);
void writeMemory(std::uint32_t to, const void* object, std::uint32_t count);

}  // namespace omniset::loader
