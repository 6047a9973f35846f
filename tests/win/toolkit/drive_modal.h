// Modal dialogs with a program in the operator's place.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "ui/toolkit/dialog.h"

namespace omniset::test {

// A dialog class that does something once its modal loop runs. When that does not end the dialog
// within ten seconds, the test fails and the dialog is ended.
template <class Base>
class Driven : public Base {
 public:
  using Base::Base;

  std::function<void(Driven&)> drive = [](Driven&) {};

  INT_PTR dialogProcedure(UINT message, WPARAM word, LPARAM value) override {
    if (message == WM_INITDIALOG) {
      PostMessageA(this->handle(), kDrive, 0, 0);
      SetTimer(this->handle(), kWatchdog, 10000, nullptr);
    } else if (message == kDrive) {
      drive(*this);
      return TRUE;
    } else if (message == WM_TIMER && word == kWatchdog) {
      ADD_FAILURE() << "the dialog stayed open";
      EndDialog(this->handle(), -2);
      return TRUE;
    }
    return Base::dialogProcedure(message, word, value);
  }

 private:
  static constexpr UINT kDrive = WM_APP + 50;
  static constexpr UINT_PTR kWatchdog = 50;
};

// As if the operator did it; the dialog gets to it when its loop runs on.
void pressKey(HWND control, WPARAM key);
void typeText(HWND control, const std::string& text);
void pressButton(const Dialog& dialog, int id);

}  // namespace omniset::test
