// simulation: runs whole installations from seeds, and tells the seeds that went wrong.

#include <random>
#include <string>

#include "scenario.h"
#include "seed_runner.h"
#include "tests/fakes/temp_folder.h"
#include "world.h"

namespace omniset::sim {
namespace {

std::string bytesFromSeed(std::size_t size, unsigned seed) {
  std::mt19937 random(seed);
  std::string bytes(size, '\0');
  for (char& c : bytes) c = static_cast<char>(random());
  return bytes;
}

PackageFolder makePackages(const test::TempFolder& folder) {
  PackageFolder packages;
  packages.path = folder.path();
  for (const std::size_t size : {0, 1, 1451, 1452, 1453, 2904, 10'000, 40'000, 150'000}) {
    const std::string name = "package-" + std::to_string(size) + ".bdl";
    packages.contents[name] = bytesFromSeed(size, static_cast<unsigned>(size) + 1);
    folder.write(name, packages.contents[name]);
  }
  packages.scriptContent = bytesFromSeed(5000, 7);
  packages.scriptPath = folder.write("own.rsc", packages.scriptContent);
  return packages;
}

int runProgram(int argc, char** argv) {
  const test::TempFolder folder;
  const PackageFolder packages = makePackages(folder);
  return runSeeds(argc, argv, "Runs whole installations on a simulated network, one per seed.",
                  [&](std::uint64_t seed) {
                    return runScenario(Scenario::fromSeed(seed, packages), packages);
                  });
}

}  // namespace
}  // namespace omniset::sim

int main(int argc, char** argv) {
  return omniset::sim::runProgram(argc, argv);
}
