// The operator in front of the main window: message boxes, prompts and choosers over it.
#pragma once

#include <optional>
#include <string>

#include "ui/toolkit/dialog.h"
#include "ui/workflow/main_view.h"

namespace omniset {

class WindowOperator : public Operator {
 public:
  // The dialog is the window's and outlives this.
  explicit WindowOperator(const Dialog& dialog) : dialog_(dialog) {}

  void tell(const char* caption, const std::string& text, Icon icon) override;
  bool ask(const char* caption, const std::string& text) override;
  bool warn(const std::string& text) override;
  std::optional<std::string> nameSet(const std::string& proposal) override;
  std::optional<std::string> chooseFolder(const std::string& present) override;
  std::optional<std::string> chooseScript() override;

 private:
  const Dialog& dialog_;
};

}  // namespace omniset
