// The program itself, started by a test and used through its windows as an operator uses it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/win/driver/driven_dialog.h"
#include "tests/win/driver/driven_list.h"
#include "tests/win/driver/message_box.h"

namespace omniset::test {

constexpr char kMainCaption[] = "Veltrona Router Installer v1.8";

// The columns of the two lists.
enum RouterColumn { kLabelColumn, kAddressColumn, kStatusColumn };
enum PackageColumn { kNameColumn, kVersionColumn, kDescriptionColumn };

class WindowUnderTest : public DrivenDialog {
 public:
  // Starts the program and waits until its window is complete. The trace goes to the file.
  WindowUnderTest(const std::string& program, const std::string& traceFile);

  DrivenList& routers() { return routers_; }
  DrivenList& packages() { return packages_; }
  std::string statusBar() const;
  // In pixels of the window's area.
  RECT statusBarPlace() const;
  // In pixels on the screen.
  RECT rectangle() const;

  void awaitStatusBar(const std::string& expected) const;
  DrivenMessageBox awaitBox(const std::string& caption) const;
  DrivenDialog awaitDialog(const std::string& caption) const;
  bool hasOnlyMainWindow() const;

  // Returns when the window has taken all input that was given so far.
  void settle();

  // Selects a row of the router list and waits until the controls show it.
  void selectRouter(int row);
  // Clicks packages and waits for their marks to change.
  void toggle(const std::string& package);

  // Closes the window as an operator does; the exit code.
  DWORD end();

 private:
  explicit WindowUnderTest(const std::shared_ptr<Process>& started);
  HWND statusBarControl() const;
  void passMark();

  DrivenList routers_;
  DrivenList packages_;
  int mark_ = 0;
};

}  // namespace omniset::test
