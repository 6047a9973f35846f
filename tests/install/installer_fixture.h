// An installer on a network that the test plays.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "install/router_installer.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_network_interfaces.h"
#include "tests/fakes/temp_folder.h"
#include "tests/install/scripted_target.h"

namespace omniset::test {

struct InstallerFixture : ::testing::Test {
  InstallerFixture() {
    network->clock = &clock;
    trace.clear();
  }

  void deliver(const LinkFrame& frame) { network->deliver(frame.datagram()); }
  // Delivers a frame and lets the loop take it.
  void hear(const LinkFrame& frame) {
    deliver(frame);
    installer.step();
  }
  // One turn of the loop that takes no time.
  void turn() {
    network->clock = nullptr;
    installer.step();
    network->clock = &clock;
  }
  // Turns of the loop that find nothing to receive and wait for the next timer.
  void idle(int turns) {
    for (int i = 0; i < turns; ++i) installer.step();
  }
  void install(const MacAddress& mac, std::vector<std::string> files = {}) {
    RouterRecord record;
    record.mac = mac;
    record.lastSeen = clock.now();
    record.packageFiles = std::move(files);
    installer.access().install(record, packages.path());
  }
  // A copy of the target's record; a record without a status text when it has no session.
  RouterRecord record(const MacAddress& mac) {
    const auto access = installer.access();
    const RouterRecord* found = access.record(mac);
    return found ? *found : RouterRecord{};
  }
  bool hasSession(const MacAddress& mac) { return installer.access().record(mac) != nullptr; }
  LinkFrame sent(std::size_t index) const { return frameFrom(network->sent.at(index).bytes); }

  CapturedTrace trace;
  FakeClock clock;
  std::shared_ptr<FakeNetwork> network = std::make_shared<FakeNetwork>();
  FakeNetworkInterfaces interfaces{{{"eth0", kInstallerMac}, {"eth1", kStrangerMac}}};
  TempFolder packages;
  TempFolder temporary;
  FakeTempFiles tempFiles{temporary};
  RouterInstaller installer{
      0, InstallerServices{interfaces, std::make_unique<FakeUdpSocket>(network), clock, tempFiles}};
};

inline constexpr MacAddress kSecondMac{{0x02, 0x00, 0x00, 0x01, 0x02, 0x04}};

}  // namespace omniset::test
