// A clock that stands still until it is moved.
#pragma once

#include "core/clock.h"

namespace omniset::test {

class FakeClock : public Clock {
 public:
  explicit FakeClock(Micros start = 1000 * kSecond) : now_(start) {}
  Micros now() const override { return now_; }
  void advance(Micros by) { now_ += by; }

 private:
  Micros now_;
};

}  // namespace omniset::test
