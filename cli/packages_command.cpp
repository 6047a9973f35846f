#include "cli/packages_command.h"

#include <algorithm>
#include <tuple>
#include <vector>

#include "cli/exit_status.h"
#include "cli/json_lines.h"
#include "cli/package_folder.h"
#include "cli/package_table.h"

namespace omniset {

namespace {

// The catalogue has them in whatever order the system lists a folder.
std::vector<PackageRecord> sorted(std::vector<PackageRecord> packages) {
  std::sort(packages.begin(), packages.end(), [](const PackageRecord& a, const PackageRecord& b) {
    return std::tie(a.name, a.version, a.fileName) < std::tie(b.name, b.version, b.fileName);
  });
  return packages;
}

}  // namespace

int runPackages(const PackagesOptions& options, const Console& console) {
  PackageFolder folder(options.folder);
  warnOfUnreadable(folder, console.err);
  const std::vector<PackageRecord> packages = sorted(folder.catalogue().records());
  if (options.json) {
    for (const PackageRecord& package : packages) console.out << packageJson(package);
  } else {
    console.out << packageTable(packages);
  }
  return kExitDone;
}

}  // namespace omniset
