// The unattended installation of the command line at work: one run over all targets of the
// scenario.
#pragma once

#include <map>
#include <string>

#include "cli/install_run.h"
#include "install_operator.h"

namespace omniset::sim {

class UnattendedOperator : public InstallOperator, private InstallListener {
 public:
  UnattendedOperator(const Scenario& scenario, const PackageFolder& packages,
                     RouterInstaller& installer, const Clock& clock, Inspect inspect);

  void poll() override;
  void cancel(const MacAddress& /*mac*/) override {}
  bool isWaiting(const MacAddress& /*mac*/) const override { return false; }
  void foundInstalled(const MacAddress& /*mac*/) override {}
  bool done() const override { return run_.done(); }

 private:
  void routerSeen(const MacAddress& mac, const std::string& label) override;
  void statusChanged(const RouterState& state) override;
  void routerDone(const MacAddress& mac, bool ok, const std::string& text) override;

  const Scenario& scenario_;
  Inspect inspect_;
  InstallRun run_;
  std::map<MacAddress, int> seen_;
  std::map<MacAddress, int> results_;
};

}  // namespace omniset::sim
