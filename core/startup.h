// The order in which the program starts and stops, and what becomes of a failure that nobody else
// handled.
#pragma once

#include <memory>
#include <string>

namespace omniset {

// The main window, from its construction on.
class Desktop {
 public:
  // Shuts down what has not been shut down; keeps failures to itself.
  virtual ~Desktop() = default;
  // Handles messages until the window is closed; returns the code it was closed with.
  virtual int runMessageLoop() = 0;
  // Writes the settings and stops the workers. Raises Error.
  virtual void shutDown() = 0;
};

// What start-up needs of the system. Called by the main thread alone.
class StartupSystem {
 public:
  // Styles of a message box, as the system numbers them.
  static constexpr unsigned kPlain = 0;
  static constexpr unsigned kSevere = 0x10;
  static constexpr unsigned kExclamation = 0x30;

  virtual ~StartupSystem() = default;
  // Claims to be the only instance, until the process ends; false when another one runs.
  // Raises Error "CreateMutex() failed".
  virtual bool claimSingleInstance() = 0;
  // Raises Error "WSA start failed".
  virtual void startSockets() = 0;
  virtual void cleanUpSockets() = 0;
  virtual void startControls() = 0;
  virtual std::unique_ptr<Desktop> makeWindow() = 0;
  // A box with an OK button and no owner.
  virtual void tell(const std::string& text, const char* caption, unsigned style) = 0;
};

// Runs the program; returns its exit code: that of the message loop, 0 when another instance runs,
// -1 after a failure. Lets no exception out.
int runProgram(StartupSystem& system);

}  // namespace omniset
