// Small files of the kernel's, and what the system says of a failure.
#pragma once

#include <string>

namespace omniset {

// Empty when it cannot be read.
std::string readSystemFile(const char* path);

// Raises Failure: the sentence, and why in the system's words.
[[noreturn]] void failWithReason(const std::string& sentence);

}  // namespace omniset
