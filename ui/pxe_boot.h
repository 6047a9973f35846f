// Asks for the settings of the network boot service.
#pragma once

#include "ui/settings.h"
#include "ui/toolkit/dialog.h"

namespace omniset {

class PXEBoot : public Dialog {
 public:
  explicit PXEBoot(const BootServerSettings& present) : settings_(present) {}
  ~PXEBoot() override = default;

  // True when the operator pressed "OK" with a valid address; only then settings() is what was
  // entered.
  bool ask(HWND parent);
  const BootServerSettings& settings() const { return settings_; }

  INT_PTR dialogProcedure(UINT message, WPARAM word, LPARAM value) override;

 private:
  void show();
  void enabledClicked();
  void okPressed();
  void refuseAddress();

  BootServerSettings settings_;
};

}  // namespace omniset
