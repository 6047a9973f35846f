#include "tests/tools/bdl_sets.h"

#include "core/format_text.h"
#include "packages/version_text.h"

namespace omniset::test {

std::string bdlFileName(const BdlPackage& package) {
  return package.name + "-" + versionText(package.version) + ".bdl";
}

std::vector<BdlPackage> demoPackages() {
  constexpr std::size_t kKilobyte = 1024;
  constexpr std::uint32_t kVersion = versionWord(2, 9, 7);
  const PackageDependency system{"system", kVersion, 0};
  const PackageDependency security{"security", kVersion, kVersion};
  const PackageDependency routing{"routing", versionWord(2, 9, 0, 'c'), 0};
  return {
      {"system", kVersion, "Base system: kernel, console and tools", {}, 2000 * kKilobyte, 1},
      {"security", kVersion, "Secure shell and certificates", {system}, 640 * kKilobyte, 2},
      {"dhcp", kVersion, "Address service for the local network", {system}, 220 * kKilobyte, 3},
      {"routing", kVersion, "Dynamic routing protocols", {system}, 800 * kKilobyte, 4},
      {"wireless", kVersion, "Wireless interfaces", {system, security}, 1200 * kKilobyte, 5},
      {"tunnels", kVersion, "Encrypted tunnels", {routing, security}, 410 * kKilobyte, 6},
  };
}

BdlPackage manyPackage(int index) {
  BdlPackage package;
  package.name = formatText("package-%d", index);
  package.version = versionWord(2, 9, 7);
  package.description = formatText("Package number %d", index);
  if (index > 0) package.dependencies.push_back({"package-0", versionWord(2, 9), 0});
  package.payloadBytes = 65'536;
  package.seed = static_cast<std::uint64_t>(index);
  return package;
}

std::vector<NamedFile> fuzzSeeds() {
  const std::string header = bdlPackageSection("system", versionWord(2, 9, 7));
  const std::string description = bdlDescriptionSection("Base system");
  const std::string dependencies = bdlDependencySection({{"kernel", versionWord(2, 8), 0}});
  const std::string whole = bdlFile(header + description + dependencies);
  return {
      {"no-sections", bdlFile("")},
      {"without-dependencies", bdlFile(header + description + bdlSection(kPayloadSection, "data"))},
      {"with-dependencies", whole},
      {"two-images", whole + whole},
      {"empty-description", bdlFile(header + bdlSection(kDescriptionSection, ""))},
      {"endless-description",
       bdlFile(header + bdlSection(kDescriptionSection, "x", 0xFFFFFF00), 0xFFFFFFFF)},
      {"too-many-dependencies",
       bdlFile(header + description + bdlSection(kDependencySection, littleEndian16(0xFFFF)))},
      {"trailing-bytes", bdlFile(header + description + "abc")},
  };
}

}  // namespace omniset::test
