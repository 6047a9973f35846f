// The packages of a folder that the operator named.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "packages/package_catalogue.h"

namespace omniset {

class PackageFolder {
 public:
  // Raises BadInput when the folder cannot be read or holds no package.
  explicit PackageFolder(const std::string& folder);

  PackageCatalogue& catalogue() { return catalogue_; }
  // The package files that are not packages, or damaged ones.
  const std::vector<std::string>& unreadable() const { return unreadable_; }

 private:
  NoPackageRows rows_;
  NoStatusText status_;
  PackageCatalogue catalogue_{rows_, status_};
  std::vector<std::string> unreadable_;
};

// Tells the operator about the files that are no packages.
void warnOfUnreadable(const PackageFolder& folder, std::ostream& err);

}  // namespace omniset
