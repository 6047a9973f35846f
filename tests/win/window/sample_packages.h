// Folders of small packages that the window's tests choose from.
#pragma once

#include <string>
#include <vector>

#include "tests/tools/bdl_sets.h"

namespace omniset::test {

constexpr std::uint32_t kSampleVersion = versionWord(2, 9, 7);

// "system", "security" and "routing", which need it, and "wireless", which needs the first two.
std::vector<BdlPackage> samplePackages();

// Writes the packages into the folder, which is made if need be.
void writePackages(const std::string& folder, const std::vector<BdlPackage>& packages);
void writeBytes(const std::string& path, const std::string& bytes);

// The names of the packages' files.
std::vector<std::string> fileNames(const std::vector<BdlPackage>& packages);

}  // namespace omniset::test
