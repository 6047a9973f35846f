// The packages of a folder that the operator named.
#pragma once

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

// What to tell the operator about a file that is no package.
std::string unreadableWarning(const std::string& fileName);

}  // namespace omniset
