// What the window's tests share: an empty store, a folder of packages, the window, and a router in
// another network that its host plays.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "resources/resource_ids.h"
#include "tests/win/driver/host_channel.h"
#include "tests/win/driver/settings_store.h"
#include "tests/win/driver/window_under_test.h"
#include "tests/win/window/sample_packages.h"

namespace omniset::test {

// Of the adapter through which targets speak; those after the first have addresses of their own.
constexpr char kTargetAddress[] = "02:00:00:00:00:02";
constexpr char kSecondTargetAddress[] = "06:00:01:00:00:02";

constexpr char kAddressWarning[] =
    "No address will be set unless both address and netmask is specified. Proceed?";
constexpr char kGatewayWarning[] = "No gateway will be set if address is invalid. Proceed?";
constexpr char kRebootPrompt[] = "Remove floppy from router and press reboot";

// For a virtual PC, emulated on a machine that does other things too.
constexpr Milliseconds kBootLimit{60'000};

using Texts = std::vector<std::string>;

class WindowTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // A path in the test's own folder, as this side sees it.
  std::string path(const std::string& name) const { return folder_ + "\\" + name; }
  // The folder of the sample packages, which the store names as the one to use.
  std::string packageFolder() const { return path("packages"); }

  void startWindow();
  WindowUnderTest& window() { return *window_; }
  DrivenList& routers() { return window_->routers(); }
  DrivenList& packages() { return window_->packages(); }
  // Closes the window and starts the program again.
  void restartWindow();
  void endWindow();

  // Plays a router; more arguments of omniset-target may follow.
  void startTarget(const Texts& arguments = {});
  void stopTarget();
  // A frozen target is there, but silent: what the window shows does not change under the test.
  void freezeTarget();
  void thawTarget();
  // Waits until the router is ready and selects it.
  void selectReadyRouter(const std::string& address = kTargetAddress);
  // The row of the router with this address.
  int rowOf(const std::string& address = kTargetAddress);
  void awaitStatus(const std::string& status, const std::string& address = kTargetAddress,
                   Milliseconds limit = kPatience);
  // The window with a ready router, which is selected.
  void startWithRouter();

  // Installs the selected router's "system" with a script that is not there: a failure on this
  // side.
  void failForWantOfAScript();

  // Clicks a button that must bring up this box, and answers it.
  void expectBox(const std::string& caption, const std::string& text, const std::string& answer);

  // What the target was sent: exactly these files with the bytes of their sources, and the script.
  void expectReceived(const Texts& files, const std::string& target = "");
  std::string receivedScript() const;
  std::string targetLog() const;

  HostChannel& host() const;

  std::string name_;
  std::string folder_;

 private:
  void showTrace();
  std::string traceFile() { return path("trace-" + std::to_string(++starts_) + ".txt"); }

  std::unique_ptr<WindowUnderTest> window_;
  int starts_ = 0;
};

}  // namespace omniset::test
