// Targets as sessions of one program, with a store in memory.
#pragma once

#include "event_queue.h"
#include "memory_store.h"
#include "sim_network.h"
#include "sim_target.h"
#include "target/target_host.h"

namespace omniset::sim {

// One event loop with the targets on it.
struct TargetComputer {
  TargetComputer(SimNetwork& network, EventQueue& events)
      : node(network, events),
        endpoint(MacAddress{}, nullptr, kInstallPort, node.socket()),
        host(endpoint, events) {}

  SimNode node;
  BroadcastEndpoint endpoint;
  TargetHost host;
  bool isRunning = false;
};

class HostedTarget : public SimTarget {
 public:
  // The computer outlives the target.
  HostedTarget(const MacAddress& mac, TargetComputer& computer, const EventQueue& events,
               Micros preparationTime)
      : mac_(mac), computer_(computer), store_(events, preparationTime) {}

  void start() override {
    if (computer_.isRunning) return;
    computer_.isRunning = true;
    computer_.node.start([this] { computer_.host.step(kSecond); });
  }
  void powerOn() override {
    computer_.host.add({mac_, "target", "machine", "disks"}, store_, console_);
    computer_.node.wake();
  }
  void cutPower() override {
    computer_.host.remove(mac_);
    store_.abandon();
  }
  void failNextWrite() override { store_.failNextWrite(); }
  void pressKey() override {
    computer_.host.keyPressed();
    computer_.node.wake();
  }
  const TargetSession* session() const override { return computer_.host.find(mac_); }
  std::map<std::string, std::string> files() const override { return store_.files(); }
  bool keptConfiguration() const override { return store_.keptConfiguration(); }

 private:
  MacAddress mac_;
  TargetComputer& computer_;
  MemoryStore store_;
  SilentConsole console_;
};

}  // namespace omniset::sim
