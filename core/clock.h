// The time base of all timers: 64-bit microseconds since an arbitrary start.
#pragma once

#include <cstdint>

namespace omniset {

using Micros = std::int64_t;

constexpr Micros kSecond = 1'000'000;
constexpr Micros kMillisecond = 1'000;

class Clock {
 public:
  virtual ~Clock() = default;
  // Never runs backwards. May be called from any thread.
  virtual Micros now() const = 0;
};

// The system's monotonic tick count in milliseconds, times 1000.
class SystemClock : public Clock {
 public:
  Micros now() const override;
};

}  // namespace omniset
