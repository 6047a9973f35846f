// The packages that the operator chose, with what they depend on.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/options.h"
#include "packages/package_catalogue.h"

namespace omniset {

// In install order.
struct PackageSelection {
  std::vector<std::string> files;
  std::vector<std::string> shown;     // "system 2.9"
  std::vector<std::int64_t> sizes;    // in bytes
  std::vector<std::string> warnings;  // sentences

  // "system 2.9, routing 2.9"
  std::string list() const;
};

// The catalogue has scanned the choice's folder. Raises BadInput for an unknown package or a
// missing dependency.
PackageSelection selectPackages(const PackageChoice& choice, PackageCatalogue& catalogue);

// The size of a script of the operator's own. Raises BadInput when it cannot be read.
std::int64_t ownScriptSize(const std::string& path);

}  // namespace omniset
