#include <signal.h>

#include <array>

#include "core/interrupt.h"

namespace omniset {

namespace {

volatile sig_atomic_t interrupted = 0;

extern "C" void noteInterrupt(int /*signal*/) {
  interrupted = 1;
}

constexpr std::array kEndSignals = {SIGHUP, SIGINT, SIGTERM};

struct Before {
  std::array<struct sigaction, kEndSignals.size()> ends;
  struct sigaction pipe;
};
Before before;

}  // namespace

InterruptGuard::InterruptGuard() {
  interrupted = 0;
  struct sigaction action {};
  action.sa_handler = noteInterrupt;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;
  for (std::size_t i = 0; i < kEndSignals.size(); ++i) {
    sigaction(kEndSignals[i], &action, &before.ends[i]);
  }
  // A program started by nohup is to outlive its terminal. (Shells have background programs ignore
  // SIGINT too, but one sent to such a program is meant for it.)
  struct sigaction& hangup = before.ends[0];
  if (hangup.sa_handler == SIG_IGN) sigaction(SIGHUP, &hangup, nullptr);
  action.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &action, &before.pipe);
}

InterruptGuard::~InterruptGuard() {
  for (std::size_t i = 0; i < kEndSignals.size(); ++i) {
    sigaction(kEndSignals[i], &before.ends[i], nullptr);
  }
  sigaction(SIGPIPE, &before.pipe, nullptr);
}

bool InterruptGuard::requested() {
  return interrupted != 0;
}

}  // namespace omniset
