// Installs every target of the scenario as it announces itself, again after a failure, has it
// rebooted, and checks what the installer claims.
#pragma once

#include <map>
#include <string>

#include "install/router_installer.h"
#include "install_operator.h"

namespace omniset::sim {

class PatientOperator : public InstallOperator {
 public:
  PatientOperator(const Scenario& scenario, const PackageFolder& packages,
                  RouterInstaller& installer, Inspect inspect);

  void poll() override;
  void cancel(const MacAddress& mac) override;
  bool isWaiting(const MacAddress& mac) const override {
    return rows_.at(mac).phase == Phase::kWaiting;
  }
  void foundInstalled(const MacAddress& mac) override;
  // True when every target is installed, and rebooted if the scenario asks for it.
  bool done() const override;

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

  const Scenario& scenario_;
  const PackageFolder& packages_;
  RouterInstaller& installer_;
  Inspect inspect_;
  std::map<MacAddress, Row> rows_;
};

}  // namespace omniset::sim
