// How long something took.
#pragma once

#include <chrono>

namespace omniset::bench {

class Stopwatch {
 public:
  double milliseconds() const {
    return std::chrono::duration<double, std::milli>(Clock::now() - start_).count();
  }
  double seconds() const { return milliseconds() / 1000; }

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point start_ = Clock::now();
};

}  // namespace omniset::bench
