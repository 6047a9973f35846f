#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

#include "core/sync.h"

namespace omniset::test {
namespace {

// Whether another thread obtains the mutex at once.
bool isFree(Mutex& mutex) {
  bool obtained = false;
  std::thread([&] {
    try {
      const ScopedLock lock(mutex, 0);
      obtained = true;
    } catch (const std::runtime_error&) {
    }
  }).join();
  return obtained;
}

TEST(ScopedLock, HoldsTheMutexWhileItLives) {
  Mutex mutex;
  {
    const ScopedLock lock(mutex);
    EXPECT_FALSE(isFree(mutex));
  }
  EXPECT_TRUE(isFree(mutex));
}

TEST(ScopedLock, ReleasesWhenAnExceptionPasses) {
  Mutex mutex;
  try {
    const ScopedLock lock(mutex);
    throw std::runtime_error("passing");
  } catch (const std::runtime_error&) {
  }
  EXPECT_TRUE(isFree(mutex));
}

TEST(ScopedLock, InsideAnotherOfTheSameThreadKeepsTheMutex) {
  Mutex mutex;
  const ScopedLock outer(mutex);
  { const ScopedLock inner(mutex, 0); }
  EXPECT_FALSE(isFree(mutex));
}

TEST(ScopedLock, MovedReleasesOnce) {
  Mutex mutex;
  {
    ScopedLock first(mutex);
    const ScopedLock second(std::move(first));
    EXPECT_FALSE(isFree(mutex));
  }
  EXPECT_TRUE(isFree(mutex));
}

TEST(ScopedLock, ThatRunsOutOfTimeLeavesTheMutexToItsOwner) {
  Mutex mutex;
  mutex.wait();
  EXPECT_FALSE(isFree(mutex));
  EXPECT_FALSE(isFree(mutex));
  mutex.release();
  EXPECT_TRUE(isFree(mutex));
}

}  // namespace
}  // namespace omniset::test
