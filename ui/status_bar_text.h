// The status bar as the package catalogue sees it.
#pragma once

#include <string>

#include "packages/package_view.h"
#include "ui/toolkit/status_bar.h"

namespace omniset {

class StatusBarText : public StatusText {
 public:
  explicit StatusBarText(StatusBar& bar) : bar_(bar) {}

  void show(const std::string& text) override { bar_.setText(text); }

 private:
  StatusBar& bar_;
};

}  // namespace omniset
