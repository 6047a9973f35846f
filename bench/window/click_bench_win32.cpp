#include <windows.h>

#include <algorithm>
#include <filesystem>

#include "bench/window/empty_dialog_ids.h"
#include "bench/window/stopwatch.h"
#include "bench/window/window_bench.h"
#include "resources/resource_ids.h"
#include "tests/win/driver/messages.h"
#include "tests/win/driver/settings_store.h"

namespace omniset::bench {

namespace {

using namespace omniset::test;
namespace fs = std::filesystem;

constexpr int kInstalled = 64;
constexpr int kClicksPerRound = 40;
// No part of the 250 ms between two polls, so that clicks meet every moment of that.
constexpr DWORD kPauseMs = 17;
constexpr Milliseconds kInstallationLimit{60'000};
constexpr char kTargets[] = "many";

// The call returns when the window's thread has come to the click and has done what it asks for.
double clickMs(HWND button) {
  const Stopwatch watch;
  ask(button, BM_CLICK);
  return watch.milliseconds();
}

// The first click brings the window to the front and is not counted.
void measureSeries(const std::string& what, HWND window, HWND first, HWND second) {
  SetForegroundWindow(window);
  for (int i = 0; i <= kClicksPerRound; ++i) {
    Sleep(kPauseMs);
    const double taken = clickMs(i % 2 == 0 ? first : second);
    if (i > 0) printResult("click " + what, taken);
  }
}

// Ends with "Select all", which must have marked the packages.
void measureRounds(const WindowBench& bench, const std::string& state, HWND emptyDialog) {
  WindowUnderTest& window = bench.stage.window();
  const HWND all = window.control(IDC_SELECT_ALL);
  const HWND none = window.control(IDC_SELECT_NONE);
  const HWND button = GetDlgItem(emptyDialog, IDC_EMPTY_BUTTON);
  for (int i = 0; i < bench.rounds; ++i) {
    measureSeries(state + " omniset", window.handle(), all, none);
    measureSeries(state + " empty", emptyDialog, button, button);
    const DrivenList& packages = window.packages();
    if (packages.count() == 0 || packages.marked().size() != packages.column(0).size()) {
      throw WindowFault("the clicks did not mark the packages");
    }
  }
}

std::vector<int> rowsWithStatus(WindowUnderTest& window, const std::string& status) {
  const std::vector<std::string> all = window.routers().column(kStatusColumn);
  std::vector<int> rows;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (all[i] == status) rows.push_back(static_cast<int>(i));
  }
  return rows;
}

void selectReadyRouter(WindowUnderTest& window) {
  const std::vector<int> ready = rowsWithStatus(window, "Ready");
  if (ready.empty()) throw WindowFault("no router is ready");
  window.selectRouter(ready.back());
  window.awaitEnabled(IDC_SELECT_ALL);
}

// All routers have packages, so that nothing needs to be entered; one of them stays ready. Rows
// move to the end of the list when their routers announce themselves once more, and the selection
// with them: when that was in between, the click on "Install" does nothing and the next one does.
void installAllButOne(WindowUnderTest& window) {
  waitUntil(
      "all routers but one are installing",
      [&] {
        const std::vector<int> ready = rowsWithStatus(window, "Ready");
        if (ready.size() <= 1) return true;
        window.routers().clickRow(ready.front());
        window.settle();
        post(window.control(IDC_INSTALL), BM_CLICK);
        window.settle();
        return false;
      },
      [&] { return std::to_string(rowsWithStatus(window, "Ready").size()) + " ready"; },
      kInstallationLimit);
}

// What the routers have of the file that is being sent to them: the agent's name for it.
std::vector<std::uintmax_t> receivedSizes(const Stage& stage) {
  std::vector<std::uintmax_t> sizes;
  for (const auto& store : fs::directory_iterator(stage.path(kTargets))) {
    std::error_code absent;
    const std::uintmax_t size = fs::file_size(store.path() / ".omniset-part", absent);
    if (!absent && size > 0) sizes.push_back(size);
  }
  return sizes;
}

double receivedBytes(const Stage& stage) {
  double bytes = 0;
  for (const std::uintmax_t size : receivedSizes(stage)) bytes += static_cast<double>(size);
  return bytes;
}

void measureWhileInstalling(const WindowBench& bench, HWND emptyDialog) {
  WindowUnderTest& window = bench.stage.window();
  installAllButOne(window);
  waitUntil(
      "all routers are sent their package",
      [&] { return receivedSizes(bench.stage).size() == kInstalled; },
      [&] { return std::to_string(receivedSizes(bench.stage).size()); }, kInstallationLimit);
  selectReadyRouter(window);
  const Stopwatch watch;
  const double before = receivedBytes(bench.stage);
  measureRounds(bench, "installing", emptyDialog);
  printResult("carried", (receivedBytes(bench.stage) - before) / watch.seconds() / 1e6);
  if (rowsWithStatus(window, "Installing").size() != kInstalled) {
    throw WindowFault("not all installations went on to the end of the clicks");
  }
}

}  // namespace

void measureClicks(const WindowBench& bench) {
  Stage& stage = bench.stage;
  clearSettings();
  storeText("Package Path", stage.path("large"));
  storeSet("Previous Install", {"large"});
  const ShownEmptyDialog empty = showEmptyDialog(bench);
  stage.open();
  stage.startTarget(kTargets, {"--count", std::to_string(kInstalled + 1)});
  stage.window().routers().awaitCount(kInstalled + 1);
  selectReadyRouter(stage.window());
  measureRounds(bench, "quiet", empty.window);
  measureWhileInstalling(bench, empty.window);
  stage.stopTargets();
  stage.close();
}

}  // namespace omniset::bench
