// A dialog that only shows what its template says.
#pragma once

#include "ui/toolkit/dialog.h"

namespace omniset {

class StaticText : public Dialog {
 public:
  ~StaticText() override = default;

  INT_PTR dialogProcedure(UINT message, WPARAM word, LPARAM value) override;
};

}  // namespace omniset
