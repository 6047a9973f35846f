#include "tests/win/window/window_test.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "tests/fakes/temp_folder.h"

namespace omniset::test {

namespace {

constexpr std::size_t kTraceLinesShown = 20;

std::string required(const char* variable) {
  const char* value = std::getenv(variable);
  if (!value) throw WindowFault(std::string(variable) + " is not set; run tests/win/window_run");
  return value;
}

const std::string& workFolder() {
  static const std::string folder = required("OMNISET_TEST_FOLDER");
  return folder;
}

std::string testName() {
  const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
  return std::string(info->test_suite_name()) + "-" + info->name();
}

}  // namespace

HostChannel& WindowTest::host() const {
  static HostChannel channel(workFolder() + "\\host");
  return channel;
}

void WindowTest::SetUp() {
  name_ = testName();
  folder_ = workFolder() + "\\" + name_;
  clearSettings();
  writePackages(packageFolder(), samplePackages());
  storeText("Package Path", packageFolder());
}

void WindowTest::TearDown() {
  if (HasFailure()) {
    host().request({"picture", name_});
    showTrace();
  }
  window_.reset();
  host().request({"stop-all"});
}

void WindowTest::showTrace() {
  if (!window_) return;
  const Texts lines = window().process().outputLines();
  std::cout << "The program's trace ends so:\n";
  const std::size_t shown = std::min<std::size_t>(lines.size(), kTraceLinesShown);
  for (auto line = lines.end() - static_cast<std::ptrdiff_t>(shown); line != lines.end(); ++line) {
    std::cout << "  " << *line << "\n";
  }
}

void WindowTest::startWindow() {
  window_.reset();
  window_ = std::make_unique<WindowUnderTest>(required("OMNISET_TEST_PROGRAM"), traceFile());
}

void WindowTest::endWindow() {
  EXPECT_EQ(window().end(), 0u);
}

void WindowTest::restartWindow() {
  endWindow();
  startWindow();
}

void WindowTest::startTarget(const Texts& arguments) {
  Texts words{"start", name_ + "/target", "--label", "test router"};
  words.insert(words.end(), arguments.begin(), arguments.end());
  host().request(words);
}

void WindowTest::stopTarget() {
  host().request({"stop", name_ + "/target"});
}

void WindowTest::freezeTarget() {
  host().request({"freeze", name_ + "/target"});
}

void WindowTest::thawTarget() {
  host().request({"thaw", name_ + "/target"});
}

int WindowTest::rowOf(const std::string& address) {
  int row = -1;
  waitUntil("a row of " + address, [&] {
    const Texts addresses = routers().column(kAddressColumn);
    const auto found = std::find(addresses.begin(), addresses.end(), address);
    if (found == addresses.end()) return false;
    row = static_cast<int>(found - addresses.begin());
    return true;
  });
  return row;
}

// The row may move: a router that starts over gets a new one.
void WindowTest::awaitStatus(const std::string& status, const std::string& address,
                             Milliseconds limit) {
  const auto shown = [&] { return routers().row(rowOf(address)).texts.at(kStatusColumn); };
  waitUntil(
      "the router " + address + " is \"" + status + "\"", [&] { return shown() == status; },
      [&] { return "\"" + shown() + "\" and \"" + window().text(IDC_STATUS_LINE) + "\""; }, limit);
}

void WindowTest::selectReadyRouter(const std::string& address) {
  awaitStatus("Ready", address);
  window().selectRouter(rowOf(address));
}

void WindowTest::startWithRouter() {
  startWindow();
  startTarget();
  selectReadyRouter();
}

void WindowTest::failForWantOfAScript() {
  window().toggle("system");
  window().click(IDC_USE_SCRIPT);
  window().awaitEnabled(IDC_SCRIPT_FILE);
  window().type(IDC_SCRIPT_FILE, path("missing.rsc"));
  window().click(IDC_INSTALL);
  awaitStatus("Failed");
}

void WindowTest::expectBox(const std::string& caption, const std::string& text,
                           const std::string& answer) {
  DrivenMessageBox box = window().awaitBox(caption);
  EXPECT_EQ(box.text(), text);
  EXPECT_EQ(box.buttons(), answer == "OK" ? Texts{"OK"} : (Texts{"Yes", "No"}));
  box.answer(answer);
  window().settle();
}

void WindowTest::expectReceived(const Texts& files, const std::string& target) {
  Texts words{"same", name_ + "/packages", name_ + "/target" + target};
  words.insert(words.end(), files.begin(), files.end());
  EXPECT_NO_THROW(host().request(words));
}

std::string WindowTest::receivedScript() const {
  return readFile(path("target\\autorun.scr"));
}

std::string WindowTest::targetLog() const {
  return readFile(path("target.log"));
}

}  // namespace omniset::test
