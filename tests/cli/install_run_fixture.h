// An InstallRun with the real installer on a fake network and simulated time, and a listener that
// writes down what it is told.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "cli/exit_status.h"
#include "cli/install_run.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_clock.h"
#include "tests/fakes/fake_network_interfaces.h"
#include "tests/fakes/fake_udp_socket.h"
#include "tests/fakes/played_target.h"
#include "tests/fakes/temp_folder.h"

namespace omniset::test {

inline MacAddress targetMac(std::uint8_t number) {
  return {{2, 0, 0, 0, 1, number}};
}

class NotedEvents : public InstallListener {
 public:
  void routerSeen(const MacAddress& mac, const std::string& label) override {
    events.push_back("router " + mac.text() + " " + label);
  }
  void statusChanged(const RouterState& state) override {
    states.push_back(state);
    events.push_back("status " + state.mac.text() + " " + state.text);
  }
  void routerDone(const MacAddress& mac, bool ok, const std::string& text) override {
    events.push_back(resultOf(mac, ok, text));
  }

  static std::string resultOf(const MacAddress& mac, bool ok, const std::string& text) {
    return (ok ? "ok " : "failed ") + mac.text() + " " + text;
  }
  bool contains(const std::string& event) const {
    return std::count(events.begin(), events.end(), event) == 1;
  }

  std::vector<std::string> events;
  std::vector<RouterState> states;
};

class InstallRunTest : public testing::Test {
 protected:
  InstallRunTest()
      : installer(0, InstallerServices{interfaces, std::make_unique<FakeUdpSocket>(network), clock,
                                       tempFiles}) {
    network->clock = &clock;
    packages.write("system.bdl", std::string(20'000, 's'));
    options.request.packageFiles = {"system.bdl"};
    options.packagesFolder = packages.path();
    options.totalBytes = 20'000;
  }

  PlayedTarget& addTarget(std::uint8_t number, const std::string& label = "router") {
    return targets.emplace_back(*network, targetMac(number), label);
  }

  void begin() { run = std::make_unique<InstallRun>(options, installer, clock, events); }

  // One turn of the installer, of the targets and of the run.
  void turn() {
    installer.step();
    const auto sent = std::move(network->sent);
    network->sent.clear();
    for (const auto& datagram : sent) {
      for (PlayedTarget& target : targets) target.take(datagram);
    }
    run->poll();
  }

  // Until the run is done; the time that took.
  Micros finish() {
    const Micros start = clock.now();
    for (int turns = 0; turns < 100'000 && !run->done(); ++turns) turn();
    EXPECT_TRUE(run->done());
    return clock.now() - start;
  }

  void turnsFor(Micros time) {
    const Micros end = clock.now() + time;
    while (clock.now() < end) turn();
  }

  std::string ok(std::uint8_t number, const std::string& text) const {
    return NotedEvents::resultOf(targetMac(number), true, text);
  }
  std::string failed(std::uint8_t number, const std::string& text) const {
    return NotedEvents::resultOf(targetMac(number), false, text);
  }

  SilentTrace silent;
  FakeClock clock;
  TempFolder packages;
  TempFolder temp;
  FakeTempFiles tempFiles{temp};
  FakeNetworkInterfaces interfaces{{{"eth0", {{2, 0, 0, 0, 0, 1}}}}};
  std::shared_ptr<FakeNetwork> network = std::make_shared<FakeNetwork>();
  RouterInstaller installer;
  std::deque<PlayedTarget> targets;
  InstallRunOptions options;
  NotedEvents events;
  std::unique_ptr<InstallRun> run;
};

constexpr const char* kInstalledText = "Installation finished successfully";
constexpr const char* kWaitingText = "Remove floppy from router and press reboot";

}  // namespace omniset::test
