#include <windows.h>

#include <atomic>

#include "core/interrupt.h"

namespace omniset {

namespace {

std::atomic<bool> interrupted{false};

// Runs in a thread of the system's.
BOOL WINAPI noteInterrupt(DWORD event) {
  interrupted = true;
  // The system ends the program when the handler of these returns: the program is to come first.
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
  return TRUE;
}

}  // namespace

InterruptGuard::InterruptGuard() {
  interrupted = false;
  SetConsoleCtrlHandler(noteInterrupt, TRUE);
}

InterruptGuard::~InterruptGuard() {
  SetConsoleCtrlHandler(noteInterrupt, FALSE);
}

bool InterruptGuard::requested() {
  return interrupted;
}

}  // namespace omniset
