// What the loader says, on the screen and on the first serial line.
#pragma once

#include <cstdint>

namespace omniset::loader {

// A line feed starts a new line. Control characters within a name must not come here.
void print(const char* text);
void printNumber(std::uint32_t number);
// Two digits, or more where they are needed.
void printHex(std::uint32_t number);

// Says why on a line of its own; waits some seconds, or for a key, and restarts the PC. The reason
// goes on from the subject: "linux" and " is empty.".
[[noreturn]] void fail(const char* reason);
[[noreturn]] void fail(const char* subject, const char* reason);
// With a number in hexadecimal behind the reason: " (code 3B).".
[[noreturn]] void failWithCode(const char* subject, const char* reason, std::uint32_t code);

}  // namespace omniset::loader
