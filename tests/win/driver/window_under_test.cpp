#include "tests/win/driver/window_under_test.h"

#include <commctrl.h>

#include "resources/resource_ids.h"
#include "tests/win/driver/messages.h"
#include "tests/win/driver/top_windows.h"

namespace omniset::test {

namespace {

constexpr UINT kGetStep = WM_USER + 13;  // PBM_GETSTEP, which old headers lack
constexpr int kFirstMark = 1000;         // no step that a progress bar has by itself

HWND awaitMainWindow(const Process& process) {
  const HWND window = awaitTopWindow(process, kMainCaption);
  waitUntil("the main window's last control is visible", [&] {
    return IsWindowVisible(GetDlgItem(window, IDC_PACKAGES)) &&
           FindWindowExA(window, nullptr, STATUSCLASSNAMEA, nullptr);
  });
  return window;
}

}  // namespace

WindowUnderTest::WindowUnderTest(const std::string& program, const std::string& traceFile)
    : WindowUnderTest(std::make_shared<Process>(program, traceFile)) {}

WindowUnderTest::WindowUnderTest(const std::shared_ptr<Process>& started)
    : DrivenDialog(awaitMainWindow(*started), started),
      routers_(control(IDC_ROUTERS), started),
      packages_(control(IDC_PACKAGES), started) {
  // A program that is started by hand has the foreground.
  SetForegroundWindow(handle());
  settle();
}

HWND WindowUnderTest::statusBarControl() const {
  const HWND bar = FindWindowExA(handle(), nullptr, STATUSCLASSNAMEA, nullptr);
  if (!bar) throw WindowFault("there is no status bar");
  return bar;
}

std::string WindowUnderTest::statusBar() const {
  return windowText(statusBarControl());
}

RECT WindowUnderTest::statusBarPlace() const {
  return placeOf(statusBarControl());
}

RECT WindowUnderTest::rectangle() const {
  RECT rectangle{};
  GetWindowRect(handle(), &rectangle);
  return rectangle;
}

void WindowUnderTest::awaitStatusBar(const std::string& expected) const {
  waitUntil(
      "the status bar says \"" + expected + "\"", [&] { return statusBar() == expected; },
      [&] { return "\"" + statusBar() + "\""; });
}

DrivenMessageBox WindowUnderTest::awaitBox(const std::string& caption) const {
  const HWND box = awaitTopWindow(process(), caption);
  // Only a message box has a text under this number, and its buttons are there before it is seen.
  waitUntil("the box \"" + caption + "\" has a text", [&] { return GetDlgItem(box, 0xFFFF); });
  return {box, sharedProcess()};
}

DrivenDialog WindowUnderTest::awaitDialog(const std::string& caption) const {
  return {awaitTopWindow(process(), caption), sharedProcess()};
}

bool WindowUnderTest::hasOnlyMainWindow() const {
  return process().isRunning() && topWindows(process()) == std::vector<HWND>{handle()};
}

// A number goes through the window's queue, into a property of the progress bar that nobody uses.
void WindowUnderTest::passMark() {
  const HWND bar = control(IDC_PROGRESS);
  const int mark = kFirstMark + ++mark_;
  post(bar, PBM_SETSTEP, static_cast<WPARAM>(mark));
  waitUntil("the window takes its input", [&] { return ask(bar, kGetStep) == mark; });
}

// Twice: input makes the window post messages to itself.
void WindowUnderTest::settle() {
  passMark();
  passMark();
}

void WindowUnderTest::selectRouter(int row) {
  routers_.clickRow(row);
  waitUntil("the router is selected", [&] { return routers_.selectedRow() == row; });
  settle();
}

void WindowUnderTest::toggle(const std::string& package) {
  const int row = packages_.find(package);
  const bool before = packages_.isMarked(row);
  packages_.clickRow(row);
  waitUntil("the mark of \"" + package + "\" changes",
            [&] { return packages_.isMarked(row) != before; });
  settle();
}

DWORD WindowUnderTest::end() {
  close();
  return process().waitForEnd();
}

}  // namespace omniset::test
