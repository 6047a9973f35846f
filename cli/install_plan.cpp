#include "cli/install_plan.h"

#include <cstdio>
#include <filesystem>
#include <map>
#include <numeric>
#include <set>

#include "cli/bad_input.h"
#include "cli/package_table.h"
#include "core/file.h"
#include "core/shown_text.h"
#include "install/configuration_script.h"
#include "link/frame_budget.h"
#include "packages/version_text.h"

namespace omniset {

namespace {

std::string nameList(const PackageCatalogue& catalogue) {
  std::set<std::string> names;
  for (const PackageRecord& package : catalogue.records()) names.insert(shownText(package.name));
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  return list;
}

// The package that is meant by a file name, or by a package name the newest one.
const PackageRecord& packageMeant(const std::string& name, const PackageCatalogue& catalogue) {
  const int byFile = catalogue.findByFileName(name);
  if (byFile >= 0) return catalogue.record(byFile);
  const PackageRecord* newest = nullptr;
  for (const PackageRecord& package : catalogue.records()) {
    if (package.name == name && (!newest || package.version > newest->version)) newest = &package;
  }
  if (newest) return *newest;
  throw BadInput("There is no package '" + shownText(name) + "' in '" +
                 shownText(catalogue.folder()) + "': select among " + nameList(catalogue) + ".");
}

std::vector<std::string> selectedFiles(const InstallOptions& options,
                                       const PackageCatalogue& catalogue) {
  std::vector<std::string> files;
  if (options.select.empty()) {
    for (const PackageRecord& package : catalogue.records()) files.push_back(package.fileName);
  }
  for (const std::string& name : options.select) {
    files.push_back(packageMeant(name, catalogue).fileName);
  }
  return files;
}

// Which versions of it the folder has, none of which will do; empty when it has none.
std::string versionsThere(const std::string& name, const PackageCatalogue& catalogue) {
  std::string versions;
  for (const PackageRecord& package : catalogue.records()) {
    if (package.name != name) continue;
    versions += (versions.empty() ? "" : ", ") + std::string(versionText(package.version));
  }
  return versions;
}

std::string missingSentence(const PackageRecord& package, const PackageDependency& dependency,
                            const PackageCatalogue& catalogue) {
  const std::string versions = versionsThere(dependency.name, catalogue);
  const std::string name = shownText(package.name);
  std::string text = "Package " + name + " needs " + dependencyShown(dependency) +
                     ", which is not in '" + shownText(catalogue.folder()) + "'";
  if (!versions.empty()) text += " (there is only " + versions + ")";
  return text + ": put that package into the folder, or leave " + name + " out.";
}

bool isProvided(const PackageDependency& dependency, const PackageCatalogue& catalogue) {
  for (const PackageRecord& package : catalogue.records()) {
    if (package.name == dependency.name && dependency.accepts(package.version)) return true;
  }
  return false;
}

void checkMissing(const std::vector<std::string>& files, const PackageCatalogue& catalogue) {
  std::string sentences;
  for (const std::string& file : files) {
    const PackageRecord& package = catalogue.record(catalogue.findByFileName(file));
    for (const PackageDependency& dependency : package.dependencies) {
      if (isProvided(dependency, catalogue)) continue;
      if (!sentences.empty()) sentences += "\n";
      sentences += missingSentence(package, dependency, catalogue);
    }
  }
  if (!sentences.empty()) throw BadInput(sentences);
}

// Only a regular file can be read again for every router, and has a length.
bool isReadable(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return false;
  const FilePtr file = openFile(path, "rb");
  if (!file) return false;
  std::fgetc(file.get());
  return std::ferror(file.get()) == 0;
}

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
  // Its length does not depend on the MAC address in it.
  if (!request.useOwnScript) return static_cast<std::int64_t>(generatedScript(request).size());
  if (!isReadable(request.scriptPath)) {
    throw BadInput("The script '" + shownText(request.scriptPath) +
                   "' cannot be read: name a file, and check its path and its permissions.");
  }
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(request.scriptPath, error);
  return error ? 0 : static_cast<std::int64_t>(size);
}

void warnOfVersions(const InstallPlan& plan, const PackageCatalogue& catalogue,
                    std::vector<std::string>& warnings) {
  std::map<std::string, std::string> files;
  for (const std::string& file : plan.run.request.packageFiles) {
    const std::string& name = catalogue.record(catalogue.findByFileName(file)).name;
    const auto [other, isFirst] = files.emplace(name, file);
    if (isFirst) continue;
    warnings.push_back("Warning: several versions of " + shownText(name) + " will be sent (" +
                       shownText(other->second) + " and " + shownText(file) +
                       "): keep only one of them in the folder.");
  }
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
  std::vector<std::string> files = catalogue.installOrder(selectedFiles(options, catalogue));
  checkMissing(files, catalogue);
  std::vector<std::int64_t> sizes;
  for (const std::string& file : files) {
    const PackageRecord& package = catalogue.record(catalogue.findByFileName(file));
    sizes.push_back(package.size);
    plan.packages.push_back(shownText(package.name) + " " + versionText(package.version));
  }
  plan.run.request = requestFor(options, std::move(files));
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
  warnOfVersions(plan, catalogue, plan.warnings);
  warnOfFrames(sizes, plan.warnings);
  return plan;
}

}  // namespace omniset
