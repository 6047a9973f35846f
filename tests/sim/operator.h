// The operator of a simulated run: installs every target of the scenario as it announces itself,
// again after a failure, has it rebooted, and checks what the installer claims.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "install/router_installer.h"
#include "scenario.h"

namespace omniset::sim {

class Operator {
 public:
  // What is on a target's disk: returns an empty text when it is exactly what was wanted, else what
  // is wrong.
  using Inspect = std::function<std::string(const TargetPlan&, const RouterRecord&)>;

  Operator(const Scenario& scenario, const PackageFolder& packages, RouterInstaller& installer,
           Inspect inspect);

  void poll();
  void cancel(const MacAddress& mac);

  // True when the target waits to be installed, from the operator's view.
  bool isWaiting(const MacAddress& mac) const { return rows_.at(mac).phase == Phase::kWaiting; }
  // The operator finds a target installed whose session ended before it could say so.
  void foundInstalled(const MacAddress& mac);

  // True when every target is installed, and rebooted if the scenario asks for it.
  bool done() const;
  // The first thing that must not happen; empty if none did.
  const std::string& fault() const { return fault_; }

 private:
  enum class Phase { kWaiting, kInstalling, kInstalled, kDone };
  struct Row {
    const TargetPlan* plan;
    Phase phase = Phase::kWaiting;
    int attempts = 0;
  };

  void takeAnnouncements(RouterInstaller::Access& access);
  void follow(RouterInstaller::Access& access, Row& row);
  void verify(Row& row, const RouterRecord& record);
  void failed(Row& row, const std::string& text);
  void report(const Row& row, const std::string& what);

  const Scenario& scenario_;
  const PackageFolder& packages_;
  RouterInstaller& installer_;
  Inspect inspect_;
  std::map<MacAddress, Row> rows_;
  std::string fault_;
};

}  // namespace omniset::sim
