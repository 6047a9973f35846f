#include "tests/win/window/sample_packages.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace omniset::test {

std::vector<BdlPackage> samplePackages() {
  const PackageDependency system{"system", kSampleVersion, 0};
  const PackageDependency security{"security", kSampleVersion, kSampleVersion};
  return {
      {"routing", kSampleVersion, "Dynamic routing protocols", {system}, 5000, 1},
      {"security", kSampleVersion, "Secure shell and certificates", {system}, 3000, 2},
      {"system", kSampleVersion, "Base system: kernel, console and tools", {}, 20'000, 3},
      {"wireless", kSampleVersion, "Wireless interfaces", {system, security}, 7000, 4},
  };
}

void writeBytes(const std::string& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

void writePackages(const std::string& folder, const std::vector<BdlPackage>& packages) {
  std::filesystem::create_directories(folder);
  for (const BdlPackage& package : packages) {
    writeBytes(folder + "\\" + bdlFileName(package), buildBdl(package));
  }
}

std::vector<std::string> fileNames(const std::vector<BdlPackage>& packages) {
  std::vector<std::string> names;
  for (const BdlPackage& package : packages) names.push_back(bdlFileName(package));
  return names;
}

}  // namespace omniset::test
