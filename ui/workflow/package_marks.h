// Which packages of a folder are marked for a router.
//
// An operator's choice is a list of references, which outlives the folder: a reference is a
// package's name, so that a choice made with one version's folder applies to the next version's.
// Only a package that an earlier file of the same name hides is referred to by its file name.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "packages/package_catalogue.h"

namespace omniset {

// One mark per record of the catalogue.
using PackageMarks = std::vector<bool>;

// The packages that a choice refers to, and those that these depend on.
PackageMarks marksOf(PackageCatalogue& catalogue, const std::vector<std::string>& choice);

// The choice that these marks stand for, in the catalogue's order, completed by what the packages
// depend on; behind it what `before` refers to and the folder does not hold.
std::vector<std::string> choiceOf(PackageCatalogue& catalogue, const PackageMarks& marks,
                                  const std::vector<std::string>& before);

// The marked packages' files in the order of their installation.
std::vector<std::string> filesOf(PackageCatalogue& catalogue, const PackageMarks& marks);

// The size of these files together, in bytes.
std::int64_t bytesOf(const PackageCatalogue& catalogue, const std::vector<std::string>& files);

int countOf(const PackageMarks& marks);

}  // namespace omniset
