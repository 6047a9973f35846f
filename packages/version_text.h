// The textual form of a version word.
#pragma once

#include <cstdint>

namespace omniset {

// "2.8.7", "2.9beta3", "any". The text lies in one static buffer: it is valid until the next call,
// and only one thread may call.
const char* versionText(std::uint32_t version);

}  // namespace omniset
