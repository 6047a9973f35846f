#include "unattended_operator.h"

#include <algorithm>
#include <utility>

namespace omniset::sim {

namespace {

InstallRunOptions optionsOf(const Scenario& scenario, const PackageFolder& packages) {
  InstallRunOptions options;
  options.choice = RouterChoice::kNamed;
  for (const TargetPlan& plan : scenario.targets) options.named.push_back(plan.mac);
  options.request = scenario.targets.front().request;
  options.packagesFolder = packages.path;
  options.reboot = scenario.askForReboot;
  options.wait = 60 * kSecond;
  for (const std::string& name : options.request.packageFiles) {
    options.totalBytes += std::ssize(packages.contents.at(name));
  }
  return options;
}

}  // namespace

UnattendedOperator::UnattendedOperator(const Scenario& scenario, const PackageFolder& packages,
                                       RouterInstaller& installer, const Clock& clock,
                                       Inspect inspect)
    : scenario_(scenario),
      inspect_(std::move(inspect)),
      run_(optionsOf(scenario, packages), installer, clock, *this) {}

void UnattendedOperator::poll() {
  if (run_.done()) return;
  run_.poll();
  if (!run_.done()) return;
  for (const TargetPlan& plan : scenario_.targets) {
    if (results_[plan.mac] != 1) report(plan.mac, "has not exactly one result");
  }
}

void UnattendedOperator::routerSeen(const MacAddress& mac, const std::string& /*label*/) {
  if (++seen_[mac] > 1) report(mac, "is started twice");
}

void UnattendedOperator::statusChanged(const RouterState& state) {
  if (state.bytes > state.total) report(state.mac, "counts more bytes than there are");
}

void UnattendedOperator::routerDone(const MacAddress& mac, bool ok, const std::string& text) {
  ++results_[mac];
  if (!ok) {
    const bool mustSucceed = scenario_.isPeaceful() && scenario_.faults.loss == 0;
    if (mustSucceed || text.empty()) report(mac, "fails with \"" + text + "\"");
    return;
  }
  const auto plan = std::find_if(scenario_.targets.begin(), scenario_.targets.end(),
                                 [&](const TargetPlan& target) { return target.mac == mac; });
  RouterRecord record = scenario_.targets.front().request;
  record.mac = mac;
  const std::string wrong = inspect_(*plan, record);
  if (!wrong.empty()) report(mac, "wrong success: " + wrong);
}

}  // namespace omniset::sim
