// The packages of a folder as a table for people.
#pragma once

#include <string>
#include <vector>

#include "packages/package_catalogue.h"

namespace omniset {

// "system 2.9 or later"; with no bounds just the name.
std::string dependencyShown(const PackageDependency& dependency);

// A line of titles and a line per package, in aligned columns.
std::string packageTable(const std::vector<PackageRecord>& packages);

}  // namespace omniset
