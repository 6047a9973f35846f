#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <thread>
#include <vector>

#include "core/error.h"
#include "core/os_error.h"
#include "core/sync.h"
#include "tests/contract/raised_text.h"

namespace omniset::test {
namespace {

std::string notOwnerText() {
  return "Mutex ReleaseMutex: " + osErrorText(osErrorNotOwner()) +
         "Error code: " + std::to_string(osErrorNotOwner());
}

// Runs `action` in a thread of its own, to its end.
template <class Action>
void elsewhere(Action action) {
  std::thread(action).join();
}

bool obtainedElsewhere(Mutex& mutex, int timeoutMs = 0) {
  bool obtained = false;
  elsewhere([&] {
    try {
      mutex.wait(timeoutMs);
      mutex.release();
      obtained = true;
    } catch (const std::runtime_error&) {
    }
  });
  return obtained;
}

TEST(MutexContract, IsFreeAtFirst) {
  Mutex mutex;
  EXPECT_TRUE(obtainedElsewhere(mutex));
}

TEST(MutexContract, BelongsToOneThread) {
  Mutex mutex;
  mutex.wait();
  EXPECT_FALSE(obtainedElsewhere(mutex));
  mutex.release();
  EXPECT_TRUE(obtainedElsewhere(mutex));
}

TEST(MutexContract, IsRecursiveAndFreeAfterAsManyReleases) {
  Mutex mutex;
  mutex.wait();
  mutex.wait(0);
  mutex.wait(1000);
  mutex.release();
  mutex.release();
  EXPECT_FALSE(obtainedElsewhere(mutex));
  mutex.release();
  EXPECT_TRUE(obtainedElsewhere(mutex));
}

TEST(MutexContract, WaitThatRunsOutOfTimeRaises) {
  Mutex mutex;
  mutex.wait();
  elsewhere([&] {
    EXPECT_EQ(raisedText<std::runtime_error>([&] { mutex.wait(0); }), "Mutex wait timeouted");
    EXPECT_EQ(raisedText<std::runtime_error>([&] { mutex.wait(20); }), "Mutex wait timeouted");
  });
  mutex.release();
}

TEST(MutexContract, WaitsAsLongAsItIsTold) {
  Mutex mutex;
  mutex.wait();
  elsewhere([&] {
    const auto before = std::chrono::steady_clock::now();
    EXPECT_THROW(mutex.wait(100), std::runtime_error);
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(80));
  });
  mutex.release();
}

TEST(MutexContract, WaitEndsWhenTheOwnerReleases) {
  Mutex mutex;
  Event atIt(true, false);
  mutex.wait();
  bool obtained = false;
  std::thread waiter([&] {
    atIt.set();
    mutex.wait();
    obtained = true;
    mutex.release();
  });
  atIt.wait();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  mutex.release();
  waiter.join();
  EXPECT_TRUE(obtained);
}

TEST(MutexContract, ReleaseOfAFreeMutexRaises) {
  Mutex mutex;
  EXPECT_EQ(raisedText<Error>([&] { mutex.release(); }), notOwnerText());
}

TEST(MutexContract, ReleaseByAnotherThreadRaisesAndChangesNothing) {
  Mutex mutex;
  mutex.wait();
  elsewhere([&] { EXPECT_EQ(raisedText<Error>([&] { mutex.release(); }), notOwnerText()); });
  EXPECT_FALSE(obtainedElsewhere(mutex));
  mutex.release();
}

TEST(MutexContract, ReleaseOnceTooOftenRaises) {
  Mutex mutex;
  mutex.wait();
  mutex.release();
  EXPECT_EQ(raisedText<Error>([&] { mutex.release(); }), notOwnerText());
  EXPECT_TRUE(obtainedElsewhere(mutex));
}

TEST(MutexContract, UnnamedOnesAreIndependent) {
  Mutex first;
  Mutex second;
  first.wait();
  EXPECT_TRUE(obtainedElsewhere(second));
  first.release();
}

TEST(MutexContract, KeepsThreadsApart) {
  constexpr int kThreads = 4;
  constexpr int kEach = 2000;
  Mutex mutex;
  int count = 0;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < kEach; ++i) {
        const ScopedLock lock(mutex, 60'000);
        ++count;
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(count, kThreads * kEach);
}

// The last user of an object under a lock destroys both.
TEST(MutexContract, MayBeDestroyedByTheThreadThatObtainedItNext) {
  for (int i = 0; i < 300; ++i) {
    auto mutex = std::make_unique<Mutex>();
    mutex->wait();
    Event atIt(true, false);
    std::thread next([&] {
      atIt.set();
      mutex->wait();
      mutex->release();
      mutex.reset();
    });
    atIt.wait();
    mutex->release();
    next.join();
    EXPECT_EQ(mutex, nullptr);
  }
}

}  // namespace
}  // namespace omniset::test
