// A PC that runs the installer system, with a disk that loses what was not synced when the power is
// cut, and a network card whose link takes a moment.
#pragma once

#include <memory>
#include <vector>

#include "event_queue.h"
#include "random.h"
#include "sim_network.h"
#include "sim_target.h"
#include "target/disk/disk_store.h"
#include "target/target_machine.h"
#include "tests/fakes/fake_disk.h"

namespace omniset::sim {

class PcTarget : public SimTarget, public NetworkCards {
 public:
  // All that is handed in outlives the target.
  PcTarget(const MacAddress& mac, SimNetwork& network, EventQueue& events, Random& random);

  void start() override;
  void powerOn() override;
  void cutPower() override;
  void failNextWrite() override { disks_.faults.failAt = disks_.faults.operations; }
  void pressKey() override;
  const TargetSession* session() const override;
  std::map<std::string, std::string> files() const override;
  bool keptConfiguration() const override { return keptConfiguration_; }
  std::string fault() const override;

 private:
  class Store;

  std::vector<NetworkCard> bringUp() override { return {{"eth0", "sim", mac_}}; }
  bool hasLink(const NetworkCard& card) override;
  std::unique_ptr<UdpSocket> makeSocket(const NetworkCard& card) override;
  void idle(Micros time) override;

  MacAddress mac_;
  EventQueue& events_;
  Random& random_;
  SimNode node_;
  std::unique_ptr<UdpSocket> idleSocket_ = node_.socket();
  test::FakeDisks disks_;
  test::FakeDisk& disk_ = disks_.add("sda", 64 * 2048);
  SilentConsole console_;
  std::unique_ptr<TargetStore> store_;
  std::unique_ptr<TargetMachine> machine_;
  Micros linkAt_ = 0;
  bool keptConfiguration_ = false;
};

}  // namespace omniset::sim
