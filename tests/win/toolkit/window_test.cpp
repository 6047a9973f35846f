#include "ui/toolkit/window.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <vector>

#include "core/error.h"
#include "tests/contract/raised_text.h"
#include "ui/toolkit/button.h"
#include "ui/toolkit/instance.h"
#include "ui/toolkit/window_text.h"

namespace omniset::test {

namespace {

// Writes down the messages that reach it, in a place that outlives it.
class WatchedWindow : public Window {
 public:
  explicit WatchedWindow(std::vector<UINT>& seen) : seen_(seen) {}

  LRESULT windowProcedure(UINT message, WPARAM word, LPARAM value) override {
    seen_.push_back(message);
    if (message == refused) return 0;
    if (message == raising) throw std::runtime_error("raised in a procedure");
    if (message == answered) return 4711;
    return Window::windowProcedure(message, word, value);
  }

  static constexpr UINT answered = WM_APP + 1;
  UINT refused = WM_APP + 2;
  UINT raising = WM_APP + 3;

 private:
  std::vector<UINT>& seen_;
};

const WindowPlan kHidden{.text = "hidden", .style = WS_POPUP, .place = {0, 0, 100, 50}};

bool contains(const std::vector<UINT>& seen, UINT message) {
  return std::find(seen.begin(), seen.end(), message) != seen.end();
}

}  // namespace

TEST(ModuleInstance, IsTheProgramsOwnUnlessToldOtherwise) {
  const HINSTANCE own = GetModuleHandleA(nullptr);
  EXPECT_EQ(own, moduleInstance());
  setModuleInstance(GetModuleHandleA("kernel32.dll"));
  EXPECT_EQ(GetModuleHandleA("kernel32.dll"), moduleInstance());
  setModuleInstance(own);
}

TEST(Window, MessagesFromTheCreationOnReachTheObject) {
  std::vector<UINT> seen;
  WatchedWindow window(seen);
  EXPECT_EQ(nullptr, window.handle());
  window.createWindow(kHidden);
  ASSERT_NE(nullptr, window.handle());
  ASSERT_FALSE(seen.empty());
  EXPECT_TRUE(contains(seen, WM_NCCREATE));
  EXPECT_TRUE(contains(seen, WM_CREATE));
  EXPECT_EQ(4711, SendMessageA(window.handle(), WatchedWindow::answered, 0, 0));
}

TEST(Window, MessagesThatTheObjectPassesOnAreTheSystems) {
  std::vector<UINT> seen;
  WatchedWindow window(seen);
  window.createWindow(kHidden);
  EXPECT_EQ("hidden", windowText(window.handle()));
  SetWindowTextA(window.handle(), "renamed");
  EXPECT_EQ("renamed", windowText(window.handle()));
}

TEST(Window, EachObjectGetsTheMessagesOfItsOwnWindow) {
  std::vector<UINT> seenByFirst, seenBySecond;
  WatchedWindow first(seenByFirst), second(seenBySecond);
  first.createWindow(kHidden);
  second.createWindow(kHidden);
  SendMessageA(second.handle(), WatchedWindow::answered, 0, 0);
  EXPECT_FALSE(contains(seenByFirst, WatchedWindow::answered));
  EXPECT_TRUE(contains(seenBySecond, WatchedWindow::answered));
}

TEST(Window, HandleIsForgottenWhenTheNativeWindowEnds) {
  std::vector<UINT> seen;
  WatchedWindow window(seen);
  window.createWindow(kHidden);
  DestroyWindow(window.handle());
  EXPECT_EQ(nullptr, window.handle());
  EXPECT_TRUE(contains(seen, WM_DESTROY));
  EXPECT_EQ(WM_NCDESTROY, seen.back());
}

TEST(Window, DestructorEndsTheNativeWindowWithoutAMessageToTheObject) {
  std::vector<UINT> seen;
  auto window = std::make_unique<WatchedWindow>(seen);
  window->createWindow(kHidden);
  const HWND handle = window->handle();
  seen.clear();
  window.reset();
  EXPECT_FALSE(IsWindow(handle));
  EXPECT_TRUE(seen.empty());
}

TEST(Window, CanBeCreatedAgainAfterItsEnd) {
  std::vector<UINT> seen;
  WatchedWindow window(seen);
  window.createWindow(kHidden);
  DestroyWindow(window.handle());
  window.createWindow(kHidden);
  EXPECT_TRUE(IsWindow(window.handle()));
}

TEST(Window, RefusedCreationIsNamedAfterTheCall) {
  std::vector<UINT> seen;
  WatchedWindow window(seen);
  window.refused = WM_NCCREATE;
  WindowPlan plan = kHidden;
  EXPECT_TRUE(raisedText<Error>([&] { window.createWindow(plan); }).starts_with("CreateWindow: "));
  plan.extendedStyle = WS_EX_TOOLWINDOW;
  EXPECT_TRUE(
      raisedText<Error>([&] { window.createWindow(plan); }).starts_with("CreateWindowEx: "));
  EXPECT_EQ(nullptr, window.handle());
}

TEST(Window, FailureTellsTheSystemsCode) {
  std::vector<UINT> seen;
  WatchedWindow window(seen);
  WindowPlan orphan = kHidden;
  orphan.style = WS_CHILD;
  const std::string text = raisedText<Error>([&] { window.createWindow(orphan); });
  EXPECT_TRUE(text.ends_with("Error code: 1406")) << text;  // a child window needs a parent
}

TEST(Window, ExceptionDuringTheCreationComesOutOfIt) {
  for (const UINT message : {WM_NCCREATE, WM_CREATE}) {
    std::vector<UINT> seen;
    WatchedWindow window(seen);
    window.raising = message;
    EXPECT_EQ("raised in a procedure",
              raisedText<std::runtime_error>([&] { window.createWindow(kHidden); }));
    EXPECT_EQ(nullptr, window.handle());
  }
}

TEST(Window, ChildThatEndsWithItsParentForgetsItsHandle) {
  std::vector<UINT> seen;
  WatchedWindow parent(seen);
  parent.createWindow(kHidden);
  Button button;
  button.create({.text = "Press", .place = {0, 0, 50, 20}, .parent = parent.handle(), .id = 7});
  ASSERT_TRUE(IsWindow(button.handle()));
  DestroyWindow(parent.handle());
  EXPECT_EQ(nullptr, button.handle());
}

}  // namespace omniset::test
