// printf formatting into a string.
#pragma once

#include <cstdarg>
#include <string>

// Lets the compiler check the arguments; the C runtime in use is the standard's on every system.
#if defined(__clang__)
#define OMNISET_PRINTF(text, first) __attribute__((format(printf, text, first)))
#else
#define OMNISET_PRINTF(text, first) __attribute__((format(gnu_printf, text, first)))
#endif

namespace omniset {

std::string formatText(const char* format, ...) OMNISET_PRINTF(1, 2);
std::string formatTextList(const char* format, std::va_list arguments) OMNISET_PRINTF(1, 0);

}  // namespace omniset
