// The random numbers of a simulation: the same on every system for the same seed.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

namespace omniset::sim {

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}

  std::uint64_t next() { return engine_(); }
  // From `low` to `high`, both included.
  std::int64_t between(std::int64_t low, std::int64_t high) {
    return low + static_cast<std::int64_t>(engine_() % static_cast<std::uint64_t>(high - low + 1));
  }
  bool chance(double probability) {
    return static_cast<double>(engine_() >> 11) * 0x1.0p-53 < probability;
  }
  template <class T>
  const T& oneOf(const std::vector<T>& choices) {
    return choices[static_cast<std::size_t>(between(0, std::ssize(choices) - 1))];
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace omniset::sim
