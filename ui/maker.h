// The dialog in which boot floppies are made.
#pragma once

#include <memory>
#include <string>

#include "ui/floppy_service.h"
#include "ui/registry_keys.h"
#include "ui/toolkit/dialog.h"

namespace omniset {

class Maker : public Dialog, public FloppyView {
 public:
  // The root of the settings outlives the dialog.
  Maker(RegistryRoot& registry, MediaServices media)
      : registry_(registry), service_(std::move(media)) {}
  ~Maker() override = default;

  // Until the operator is done. Remembers the label of the last floppy. Raises Error.
  void run(HWND parent);

  INT_PTR dialogProcedure(UINT message, WPARAM word, LPARAM value) override;

 private:
  std::string label() const override;
  void showLabel(const std::string& label) override;
  void showExplanation(const std::string& text) override;
  void showStatus(const std::string& text) override;
  void showProgress(int percent) override;
  void showRunning(bool running) override;
  void close() override;

  bool command(int id);
  void moveFocus(int id);

  RegistryRoot& registry_;
  FloppyService service_;
  std::unique_ptr<FloppyMaking> making_;
};

}  // namespace omniset
