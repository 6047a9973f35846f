// Sets of package files for demonstrations, benchmarks and the fuzzing of the parser. The same call
// always yields the same bytes.
#pragma once

#include <string>
#include <vector>

#include "tests/tools/bdl_builder.h"

namespace omniset::test {

struct NamedFile {
  std::string name;
  std::string content;
};

// "system-2.9.7.bdl"
std::string bdlFileName(const BdlPackage& package);

// Six packages of 0.2 to 2 MB that depend on each other.
std::vector<BdlPackage> demoPackages();

// Number `index` of a folder of many packages of 64 KB; all depend on number 0.
BdlPackage manyPackage(int index);

// Small files, sound ones and broken ones, to start a fuzzer from.
std::vector<NamedFile> fuzzSeeds();

}  // namespace omniset::test
