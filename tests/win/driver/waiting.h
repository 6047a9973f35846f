// Waiting for what another process is about to do: always for a condition, never for a time, and
// never for ever.
#pragma once

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>

namespace omniset::test {

using Milliseconds = std::chrono::milliseconds;

// Generous, for a machine that has other work too; a wait ends as soon as its condition holds.
constexpr Milliseconds kPatience{15'000};

// The window is not as it should be, or did not do in time what it should. The text says what.
class WindowFault : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Returns when the condition holds; raises WindowFault with `what`, and what `seen` tells of the
// present state, if that takes longer than `limit`.
void waitUntil(const std::string& what, const std::function<bool()>& condition,
               const std::function<std::string()>& seen = {}, Milliseconds limit = kPatience);

}  // namespace omniset::test
