// Exceptions across the system's frames. A window or dialog procedure is called by the system,
// which no exception may pass through: what one raises is kept here and raised again by our own
// code outside, that is the message loop or the call that opened the dialog. Main thread only.
#pragma once

#include <windows.h>

#include <exception>

namespace omniset {

// Keeps the exception, unless an earlier one still waits: the first tells the cause. Ends the
// innermost modal dialog and wakes the message loop, so that it is raised soon. A message box or a
// chooser of the system is not ended: there it waits until the operator has answered.
void deferException(std::exception_ptr exception);

// Raises the kept exception and forgets it; does nothing when there is none. To be called after
// each message by the loop that dispatches them.
void rethrowDeferredException();

// A modal dialog that runs, for as long as this object lives.
class ModalScope {
 public:
  ModalScope();
  ~ModalScope();
  ModalScope(const ModalScope&) = delete;
  ModalScope& operator=(const ModalScope&) = delete;

  // At the dialog's initialisation.
  void open(HWND dialog) { dialog_ = dialog; }
  bool wasOpened() const { return dialog_ != nullptr; }
  // Ends the dialog; the result is the one for a failure.
  void end() const;

 private:
  ModalScope* const outer_;
  HWND dialog_ = nullptr;
};

}  // namespace omniset
