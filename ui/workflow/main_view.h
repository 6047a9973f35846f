// What the workflow sees of the main window and of the operator. The dialog implements both, tests
// play them. Called in the window's thread alone.
#pragma once

#include <optional>
#include <string>

#include "ui/workflow/control_states.h"
#include "ui/workflow/package_marks.h"
#include "ui/workflow/parameter_fields.h"

namespace omniset {

class MainView {
 public:
  virtual ~MainView() = default;

  // The parameter fields as they stand.
  virtual ParameterFields fields() const = 0;
  virtual void showFields(const ParameterFields& fields) = 0;

  virtual void showControls(const ControlStates& states) = 0;
  // The title of the group of packages.
  virtual void showPackagesTitle(const std::string& title) = 0;
  virtual void showStatusLine(const std::string& text) = 0;
  // 0 to 100.
  virtual void showProgress(int percent) = 0;

  // One mark per package row; rows behind them have none.
  virtual void showMarks(const PackageMarks& marks) = 0;
  // The row under the package list's selection mark, -1 for none.
  virtual int packageAtMark() const = 0;

  // The line of package sets. Adding one does not choose it.
  virtual void addSet(const std::string& name) = 0;
  virtual void removeSet(const std::string& name) = 0;
  virtual void chooseSet(const std::string& name) = 0;
  virtual void chooseNoSet() = 0;
  virtual std::optional<std::string> chosenSet() const = 0;

  virtual std::string folder() const = 0;
  virtual void showFolder(const std::string& folder) = 0;
};

// Questions and messages; each returns when the operator has answered. The window's timer goes on
// meanwhile: records that were looked up before may be gone afterwards.
class Operator {
 public:
  enum class Icon { kNone, kError };

  virtual ~Operator() = default;
  virtual void tell(const char* caption, const std::string& text, Icon icon) = 0;
  // Yes or No.
  virtual bool ask(const char* caption, const std::string& text) = 0;
  // The same under "Warning", of what cannot be undone: what a hasty Return answers is No.
  virtual bool warn(const std::string& text) = 0;
  // Nothing when the operator cancels.
  virtual std::optional<std::string> nameSet(const std::string& proposal) = 0;
  virtual std::optional<std::string> chooseFolder(const std::string& present) = 0;
  virtual std::optional<std::string> chooseScript() = 0;
};

}  // namespace omniset
