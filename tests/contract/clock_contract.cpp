#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "core/clock.h"
#include "tests/fakes/fake_clock.h"

namespace omniset::test {
namespace {

struct RealTime {
  SystemClock clock;
  void pass(Micros time) { std::this_thread::sleep_for(std::chrono::microseconds(time)); }
};

struct FakeTime {
  FakeClock clock;
  void pass(Micros time) { clock.advance(time); }
};

template <class Time>
class ClockContract : public ::testing::Test {
 protected:
  Time time_;
};

using Times = ::testing::Types<RealTime, FakeTime>;
TYPED_TEST_SUITE(ClockContract, Times);

TYPED_TEST(ClockContract, GoesForwardWithTime) {
  const Clock& clock = this->time_.clock;
  const Micros before = clock.now();
  this->time_.pass(50 * kMillisecond);
  // A system's ticks may be as coarse as 16 ms.
  EXPECT_GE(clock.now() - before, 30 * kMillisecond);
  EXPECT_LT(clock.now() - before, 30 * kSecond);
}

TYPED_TEST(ClockContract, NeverGoesBackwards) {
  const Clock& clock = this->time_.clock;
  Micros last = clock.now();
  for (int i = 0; i < 100'000; ++i) {
    const Micros now = clock.now();
    ASSERT_GE(now, last);
    last = now;
  }
}

TYPED_TEST(ClockContract, CountsWholeMilliseconds) {
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(this->time_.clock.now() % kMillisecond, 0);
    this->time_.pass(kMillisecond);
  }
}

TYPED_TEST(ClockContract, IsNeverNegative) {
  EXPECT_GE(this->time_.clock.now(), 0);
}

TEST(SystemClock, IsOneForAll) {
  const Micros first = SystemClock().now();
  const Micros second = SystemClock().now();
  EXPECT_LT(second - first, 30 * kSecond);
}

TEST(FakeClock, StandsStillUntilItIsMoved) {
  FakeClock clock(7 * kSecond);
  EXPECT_EQ(clock.now(), 7 * kSecond);
  EXPECT_EQ(clock.now(), 7 * kSecond);
  clock.advance(1);
  EXPECT_EQ(clock.now(), 7 * kSecond + 1);
}

}  // namespace
}  // namespace omniset::test
