#include "seed_runner.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "core/trace.h"

namespace omniset::sim {

namespace {

struct Options {
  std::uint64_t first = 1;
  std::uint64_t seeds = 2000;
  std::uint64_t only = 0;
  unsigned jobs = std::max(1U, std::thread::hardware_concurrency());
  bool trace = false;
};

class Runner {
 public:
  explicit Runner(const SeedRun& run) : run_(run) {}

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
      wrong = run_(seed);
    } catch (const std::exception& e) {
      wrong = std::string("exception: ") + e.what();
    }
    const std::lock_guard lock(mutex_);
    ++(wrong.empty() ? passed_ : failed_);
    if (!wrong.empty()) {
      std::printf("seed %llu: %s\n", static_cast<unsigned long long>(seed), wrong.c_str());
    }
  }

  const SeedRun& run_;
  std::atomic<std::uint64_t> next_{0};
  std::mutex mutex_;
  std::uint64_t passed_ = 0;
  std::uint64_t failed_ = 0;
};

}  // namespace

int runSeeds(int argc, char** argv, const std::string& description, const SeedRun& run) {
  Options options;
  CLI::App app(description);
  app.add_option("--first", options.first, "First seed");
  app.add_option("--seeds", options.seeds, "Number of seeds");
  app.add_option("--seed", options.only, "Run only this seed");
  app.add_option("--jobs", options.jobs, "Seeds run at the same time")->check(CLI::Range(1, 64));
  app.add_flag("--trace", options.trace, "Show the trace (with --seed)");
  CLI11_PARSE(app, argc, argv);
  if (!options.trace) setTraceSink(nullptr);

  Runner runner(run);
  if (options.only != 0) {
    runner.runAll(options.only, options.only, 1);
  } else {
    runner.runAll(options.first, options.first + options.seeds - 1, options.jobs);
  }
  return runner.conclude() == 0 ? 0 : 1;
}

}  // namespace omniset::sim
