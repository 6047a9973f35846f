// Reads the sections that the catalogue shows, in the order in which a package file has them. Each
// function advances the reader to the next wanted section first, and raises BadFile for a
// malformed one.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "packages/package_format.h"
#include "packages/package_reader.h"

namespace omniset {

// Makes the reader stop at the sections that are read here and at no others.
void wantMetadata(GenericReader& reader);

// Nothing when the next wanted section is another one.
std::optional<PackageHeader> readPackageHeader(GenericReader& reader);

// The text to show; nothing when the next wanted section is another one. Takes no more memory than
// the stream has bytes, whatever size the section claims. Raises std::out_of_range for an empty
// description.
std::optional<std::string> readDescription(GenericReader& reader);

// Empty when the next wanted section is another one.
std::vector<PackageDependency> readDependencies(GenericReader& reader);

}  // namespace omniset
