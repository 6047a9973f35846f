#include "core/startup.h"

#include <exception>

#include "core/trace.h"

namespace omniset {

namespace {

constexpr int kFailed = -1;

// The exit code counts from the loop's end on, even if shutting down fails.
void runWindow(StartupSystem& system, int& exitCode) {
  system.startSockets();
  system.startControls();
  const std::unique_ptr<Desktop> window = system.makeWindow();
  exitCode = window->runMessageLoop();
  traceLine("run out");
  window->shutDown();
}

}  // namespace

// The sockets are cleaned up whatever happened, even when they could not be started.
int runProgram(StartupSystem& system) {
  int exitCode = kFailed;
  try {
    if (!system.claimSingleInstance()) {
      system.tell("Veltrona Router Install Server is already running", "Error",
                  StartupSystem::kPlain);
      return 0;
    }
    runWindow(system, exitCode);
  } catch (const std::exception& failure) {
    system.tell(failure.what(), "Exception", StartupSystem::kExclamation);
  } catch (...) {
    system.tell("Unknown exception", "Exception", StartupSystem::kSevere);
  }
  system.cleanUpSockets();
  traceLine("exit");
  return exitCode;
}

}  // namespace omniset
