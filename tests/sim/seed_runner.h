// Runs a simulation for many seeds, side by side, and tells the seeds that went wrong.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace omniset::sim {

// What went wrong with the seed; empty when nothing did. Called by several threads at once.
using SeedRun = std::function<std::string(std::uint64_t seed)>;

// The program's main(): reads its options, runs, and ends with the line "N passed, N failed".
int runSeeds(int argc, char** argv, const std::string& description, const SeedRun& run);

}  // namespace omniset::sim
