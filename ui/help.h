// Shows the operator's guide.
#pragma once

#include "ui/toolkit/dialog.h"

namespace omniset {

class Help : public Dialog {
 public:
  ~Help() override = default;

  void show(HWND parent);

  INT_PTR dialogProcedure(UINT message, WPARAM word, LPARAM value) override;
};

}  // namespace omniset
