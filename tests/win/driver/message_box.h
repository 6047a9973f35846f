// A message box of the watched process.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/win/driver/process.h"

namespace omniset::test {

class DrivenMessageBox {
 public:
  DrivenMessageBox(HWND box, std::shared_ptr<Process> process)
      : box_(box), process_(std::move(process)) {}

  HWND handle() const { return box_; }
  std::string caption() const;
  std::string text() const;
  // The buttons' texts without their underlined letters' marks, from left to right.
  std::vector<std::string> buttons() const;

  // Presses the button with this text and waits until the box is gone.
  void answer(const std::string& button);

 private:
  HWND box_;
  std::shared_ptr<Process> process_;
};

}  // namespace omniset::test
