// A dialog of the watched process, used as an operator uses it: by the numbers of its controls.
//
// Whatever an operator could not do raises WindowFault: clicking a disabled button, typing into a
// read-only field, choosing a line that is not there. Input is posted, so that the dialog takes it
// from its message loop; a call returns when the dialog has taken it, but for clicks, which may
// open a modal dialog.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/win/driver/process.h"

namespace omniset::test {

class DrivenDialog {
 public:
  DrivenDialog(HWND window, std::shared_ptr<Process> process)
      : window_(window), process_(std::move(process)) {}

  HWND handle() const { return window_; }
  Process& process() const { return *process_; }
  bool isOpen() const { return IsWindow(window_) && IsWindowVisible(window_); }
  std::string caption() const;
  // What all controls show, in their order.
  std::vector<std::string> allTexts() const;

  HWND control(int id) const;
  bool isEnabled(int id) const;
  // Neither disabled nor read-only.
  bool isWritable(int id) const;
  std::string text(int id) const;
  bool isChecked(int id) const;
  int progress(int id) const;
  // In pixels of the dialog's area.
  RECT place(int id) const;

  // Waits for a control's text or state.
  void awaitText(int id, const std::string& expected, Milliseconds limit = kPatience) const;
  void awaitEnabled(int id, bool expected = true) const;

  void click(int id);
  // Moves the focus there, as the tab key does.
  void focus(int id);
  // Also for a part of the control. Brings the dialog forward if the program has no window in
  // front.
  void awaitFocus(int id) const;
  // A key that goes down and up in the control.
  void press(int id, int virtualKey);
  // Replaces what is in the field, key by key.
  void type(int id, const std::string& text);
  // Replaces what is in the field at once: what pasting can bring in, typing may not.
  void paste(int id, const std::string& text);

  std::vector<std::string> lines(int combo) const;
  // Empty when no line is chosen.
  std::string chosenLine(int combo) const;
  void choose(int combo, const std::string& line);

  // The close button in the caption.
  void close();
  void awaitClosed() const;

 protected:
  RECT placeOf(HWND child) const;
  const std::shared_ptr<Process>& sharedProcess() const { return process_; }

 private:
  HWND requireEnabled(int id) const;
  bool hasFocus(int id) const;

  HWND window_;
  std::shared_ptr<Process> process_;
};

}  // namespace omniset::test
