// Asks for the name of a package set.
#pragma once

#include <string>
#include <utility>

#include "ui/toolkit/dialog.h"

namespace omniset {

class SetName : public Dialog {
 public:
  explicit SetName(std::string proposal) : name_(std::move(proposal)) {}
  ~SetName() override = default;

  // True when the operator pressed "OK"; only then name() is what was typed.
  bool ask(HWND parent);
  const std::string& name() const { return name_; }

  INT_PTR dialogProcedure(UINT message, WPARAM word, LPARAM value) override;

 private:
  std::string name_;
};

}  // namespace omniset
