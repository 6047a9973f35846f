// Ctrl-C and the system's other ways of asking the program to end.
#pragma once

namespace omniset {

// While it lives such a request ends nothing by itself, it is only remembered. Writing to a reader
// that has gone fails then, rather than ending the program. One per process.
class InterruptGuard {
 public:
  InterruptGuard();
  ~InterruptGuard();
  InterruptGuard(const InterruptGuard&) = delete;
  InterruptGuard& operator=(const InterruptGuard&) = delete;

  static bool requested();
};

}  // namespace omniset
