// The main window's controls as the workflow sees them.
#pragma once

#include <optional>
#include <string>

#include "ui/list_rows.h"
#include "ui/toolkit/dialog.h"
#include "ui/workflow/main_view.h"

namespace omniset {

class WindowView : public MainView {
 public:
  // Both are the window's and outlive the view.
  WindowView(Dialog& dialog, PackageRowsView& packageRows)
      : dialog_(dialog), packageRows_(packageRows) {}

  // Fills the list of speeds and sets the progress bar's range.
  void prepare();

  // A control that was disabled while it had the keyboard would keep it, deaf. To be called now and
  // then, because a program in the background does not see where its keyboard will be.
  void keepFocus();

  ParameterFields fields() const override;
  void showFields(const ParameterFields& fields) override;
  void showControls(const ControlStates& states) override;
  void showPackagesTitle(const std::string& title) override;
  void showStatusLine(const std::string& text) override;
  void showProgress(int percent) override;
  void showMarks(const PackageMarks& marks) override;
  int packageAtMark() const override;
  void addSet(const std::string& name) override;
  void removeSet(const std::string& name) override;
  void chooseSet(const std::string& name) override;
  void chooseNoSet() override;
  std::optional<std::string> chosenSet() const override;
  std::string folder() const override;
  void showFolder(const std::string& folder) override;

 private:
  void showField(int id, FieldState state);

  Dialog& dialog_;
  PackageRowsView& packageRows_;
};

}  // namespace omniset
