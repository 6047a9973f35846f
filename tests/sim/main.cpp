// simulation: runs whole installations from seeds, and tells the seeds that went wrong.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <exception>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "core/trace.h"
#include "scenario.h"
#include "tests/fakes/temp_folder.h"
#include "world.h"

namespace omniset::sim {
namespace {

struct Options {
  std::uint64_t first = 1;
  std::uint64_t seeds = 2000;
  std::uint64_t only = 0;
  unsigned jobs = std::max(1U, std::thread::hardware_concurrency());
  bool trace = false;
};

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

class Runner {
 public:
  explicit Runner(const PackageFolder& packages) : packages_(packages) {}

  void runAll(std::uint64_t first, std::uint64_t last, unsigned jobs) {
    next_ = first;
    std::vector<std::jthread> threads;
    for (unsigned i = 0; i < jobs; ++i) {
      threads.emplace_back([this, last] {
        for (std::uint64_t seed = next_++; seed <= last; seed = next_++) runOne(seed);
      });
    }
  }

  // The number of seeds that went wrong.
  std::uint64_t conclude() const {
    std::printf("%llu passed, %llu failed\n", static_cast<unsigned long long>(passed_),
                static_cast<unsigned long long>(failed_));
    return failed_;
  }

 private:
  void runOne(std::uint64_t seed) {
    std::string wrong;
    try {
      wrong = runScenario(Scenario::fromSeed(seed, packages_), packages_);
    } catch (const std::exception& e) {
      wrong = std::string("exception: ") + e.what();
    }
    const std::lock_guard lock(mutex_);
    ++(wrong.empty() ? passed_ : failed_);
    if (!wrong.empty()) {
      std::printf("seed %llu: %s\n", static_cast<unsigned long long>(seed), wrong.c_str());
    }
  }

  const PackageFolder& packages_;
  std::atomic<std::uint64_t> next_{0};
  std::mutex mutex_;
  std::uint64_t passed_ = 0;
  std::uint64_t failed_ = 0;
};

int runProgram(int argc, char** argv) {
  Options options;
  CLI::App app("Runs whole installations on a simulated network, one per seed.");
  app.add_option("--first", options.first, "First seed");
  app.add_option("--seeds", options.seeds, "Number of seeds");
  app.add_option("--seed", options.only, "Run only this seed");
  app.add_option("--jobs", options.jobs, "Seeds run at the same time")->check(CLI::Range(1, 64));
  app.add_flag("--trace", options.trace, "Show the installer's trace (with --seed)");
  CLI11_PARSE(app, argc, argv);
  if (!options.trace) setTraceSink(nullptr);

  const test::TempFolder folder;
  const PackageFolder packages = makePackages(folder);
  Runner runner(packages);
  if (options.only != 0) {
    runner.runAll(options.only, options.only, 1);
  } else {
    runner.runAll(options.first, options.first + options.seeds - 1, options.jobs);
  }
  return runner.conclude() == 0 ? 0 : 1;
}

}  // namespace
}  // namespace omniset::sim

int main(int argc, char** argv) {
  return omniset::sim::runProgram(argc, argv);
}
