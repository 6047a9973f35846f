#include "cli/install_plan.h"

#include <numeric>
#include <utility>

#include "cli/package_selection.h"
#include "install/configuration_script.h"
#include "link/frame_budget.h"

namespace omniset {

namespace {

RouterRecord requestFor(const InstallOptions& options, std::vector<std::string> files) {
  RouterRecord request;
  request.scriptPath = options.script;
  request.useOwnScript = !options.script.empty();
  request.keepConfiguration = options.keepConfiguration;
  request.address = options.address;
  request.netmaskLength = options.netmaskLength;
  request.gateway = options.gateway;
  request.baudRate = options.baudRate;
  request.packageFiles = std::move(files);
  return request;
}

std::int64_t scriptSize(const RouterRecord& request) {
  if (request.keepConfiguration) return 0;
  if (request.useOwnScript) return ownScriptSize(request.scriptPath);
  // Its length does not depend on the MAC address in it.
  return static_cast<std::int64_t>(generatedScript(request).size());
}

void warnOfFrames(const std::vector<std::int64_t>& sizes, std::vector<std::string>& warnings) {
  const std::int64_t frames = framesForInstallation(sizes);
  if (frames <= kFrameBudget) return;
  warnings.push_back("Warning: this installation takes " + std::to_string(frames) +
                     " frames for each router, but a router can take only " +
                     std::to_string(kFrameBudget) +
                     " (about 95 MB): it will stop there and fail with \"Connection timeout\". "
                     "Select fewer packages and install the others afterwards.");
}

}  // namespace

InstallPlan planInstallation(const InstallOptions& options, PackageCatalogue& catalogue) {
  InstallPlan plan;
  PackageSelection selection = selectPackages(options, catalogue);
  plan.packages = selection.list();
  plan.warnings = std::move(selection.warnings);
  plan.run.request = requestFor(options, std::move(selection.files));
  std::vector<std::int64_t> sizes = std::move(selection.sizes);
  sizes.push_back(scriptSize(plan.run.request));
  plan.run.choice = options.choice;
  plan.run.named = options.routers;
  plan.run.count = options.count;
  plan.run.packagesFolder = options.folder;
  plan.run.totalBytes = std::accumulate(sizes.begin(), sizes.end(), std::int64_t{0});
  plan.run.reboot = options.reboot;
  plan.run.wait = options.wait;
  if (options.baudGiven && options.address == 0) {
    plan.warnings.push_back(
        "Warning: --baud has no effect without --address, because the speed "
        "is set together with the address.");
  }
  warnOfFrames(sizes, plan.warnings);
  return plan;
}

}  // namespace omniset
