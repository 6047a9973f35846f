#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "core/sync.h"

namespace omniset::test {
namespace {

constexpr int kLongMs = 60'000;

// Threads that wait for an event, once each.
class Waiters {
 public:
  Waiters(Event& event, int count, int timeoutMs) {
    for (int i = 0; i < count; ++i) {
      threads_.emplace_back([this, &event, timeoutMs] {
        ++arrived_;
        if (event.wait(timeoutMs)) ++released_;
        ++back_;
      });
    }
    while (arrived_ < count) std::this_thread::yield();
    // From arriving to waiting there is no sign, only time.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }

  // How many were released, when all have come back.
  int released() {
    for (auto& thread : threads_) thread.join();
    threads_.clear();
    return released_;
  }

  // False when no more come back released.
  bool waitUntilReleased(int count) const {
    while (released_ < count && back_ < arrived_) std::this_thread::yield();
    return released_ >= count;
  }

  // How many are released some time after a release.
  int releasedSoon() const {
    waitUntilReleased(1);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return released_;
  }

 private:
  std::atomic<int> arrived_ = 0;
  std::atomic<int> released_ = 0;
  std::atomic<int> back_ = 0;
  std::vector<std::thread> threads_;
};

class AnyEvent : public ::testing::TestWithParam<bool> {
 protected:
  bool manualReset() const { return GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(EventContract, AnyEvent, ::testing::Bool(), [](const auto& kind) {
  return kind.param ? "ManualReset" : "SelfResetting";
});

TEST_P(AnyEvent, HasTheInitialStateGiven) {
  EXPECT_FALSE(Event(manualReset(), false).wait(0));
  EXPECT_TRUE(Event(manualReset(), true).wait(0));
}

TEST_P(AnyEvent, SetIsSeenByAWaitOfNoTime) {
  Event event(manualReset(), false);
  event.set();
  EXPECT_TRUE(event.wait(0));
}

TEST_P(AnyEvent, ResetTakesBackASet) {
  Event event(manualReset(), false);
  event.set();
  event.reset();
  EXPECT_FALSE(event.wait(0));
}

TEST_P(AnyEvent, ResetOfAnUnsignalledEventChangesNothing) {
  Event event(manualReset(), false);
  event.reset();
  EXPECT_FALSE(event.wait(0));
}

TEST_P(AnyEvent, SetTwiceIsSetOnce) {
  Event event(manualReset(), false);
  event.set();
  event.set();
  event.wait(0);
  EXPECT_EQ(event.wait(0), manualReset());
}

TEST_P(AnyEvent, WaitsAsLongAsItIsTold) {
  Event event(manualReset(), false);
  const auto before = std::chrono::steady_clock::now();
  EXPECT_FALSE(event.wait(100));
  EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(80));
}

TEST_P(AnyEvent, SetWakesAThreadThatWaitsForever) {
  Event event(manualReset(), false);
  Waiters waiters(event, 1, kForever);
  event.set();
  EXPECT_EQ(waiters.released(), 1);
}

TEST_P(AnyEvent, ResetRightAfterASetLeavesTheWaitingThreadReleased) {
  Event event(manualReset(), false);
  Waiters waiters(event, 1, kLongMs);
  event.set();
  event.reset();
  EXPECT_EQ(waiters.released(), 1);
  EXPECT_FALSE(event.wait(0));
}

TEST_P(AnyEvent, PulseLeavesTheEventUnsignalled) {
  Event event(manualReset(), false);
  event.pulse();
  EXPECT_FALSE(event.wait(0));
}

TEST_P(AnyEvent, PulseOfASignalledEventLeavesItUnsignalled) {
  Event event(manualReset(), true);
  event.pulse();
  EXPECT_FALSE(event.wait(0));
}

TEST_P(AnyEvent, PulseWakesAThreadThatWaits) {
  Event event(manualReset(), false);
  Waiters waiters(event, 1, kLongMs);
  event.pulse();
  EXPECT_FALSE(event.wait(0)) << "the pulse is the waiting thread's";
  EXPECT_EQ(waiters.released(), 1);
}

TEST(ManualResetEvent, StaysSignalledUntilItIsReset) {
  Event event(true, false);
  event.set();
  EXPECT_TRUE(event.wait(0));
  EXPECT_TRUE(event.wait(0));
  event.reset();
  EXPECT_FALSE(event.wait(0));
}

TEST(ManualResetEvent, SetReleasesAllThatWait) {
  Event event(true, false);
  Waiters waiters(event, 3, kLongMs);
  event.set();
  EXPECT_EQ(waiters.released(), 3);
  EXPECT_TRUE(event.wait(0));
}

TEST(ManualResetEvent, PulseReleasesAllThatWait) {
  Event event(true, false);
  Waiters waiters(event, 3, kLongMs);
  event.pulse();
  EXPECT_EQ(waiters.released(), 3);
  EXPECT_FALSE(event.wait(0));
}

TEST(SelfResettingEvent, IsTakenByTheFirstWait) {
  Event event(false, false);
  event.set();
  EXPECT_TRUE(event.wait(0));
  EXPECT_FALSE(event.wait(0));
}

TEST(SelfResettingEvent, InitiallySignalledIsTakenOnce) {
  Event event(false, true);
  EXPECT_TRUE(event.wait());
  EXPECT_FALSE(event.wait(0));
}

TEST(SelfResettingEvent, EachSetReleasesOneThatWaits) {
  Event event(false, false);
  Waiters waiters(event, 3, kLongMs);
  event.set();
  EXPECT_FALSE(event.wait(0)) << "the set is a waiting thread's";
  EXPECT_EQ(waiters.releasedSoon(), 1);
  event.set();
  EXPECT_TRUE(waiters.waitUntilReleased(2));
  event.set();
  EXPECT_EQ(waiters.released(), 3);
  EXPECT_FALSE(event.wait(0));
}

TEST(SelfResettingEvent, EachPulseReleasesOneThatWaits) {
  Event event(false, false);
  Waiters waiters(event, 3, kLongMs);
  event.pulse();
  EXPECT_EQ(waiters.releasedSoon(), 1);
  event.pulse();
  EXPECT_TRUE(waiters.waitUntilReleased(2));
  event.pulse();
  EXPECT_EQ(waiters.released(), 3);
  EXPECT_FALSE(event.wait(0));
}

TEST(EventContract, AWaitThatRanOutTakesNoLaterSet) {
  Event event(false, false);
  EXPECT_FALSE(event.wait(1));
  event.set();
  EXPECT_TRUE(event.wait(0));
}

}  // namespace
}  // namespace omniset::test
