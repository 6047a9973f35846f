#include "core/clock.h"

#include <chrono>

namespace omniset {

Micros SystemClock::now() const {
  using namespace std::chrono;
  const auto sinceStart = steady_clock::now().time_since_epoch();
  return duration_cast<milliseconds>(sinceStart).count() * kMillisecond;
}

}  // namespace omniset
