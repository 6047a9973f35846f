#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>

#include "core/interrupt.h"

namespace omniset::test {

TEST(InterruptGuard, RemembersEachRequestToEnd) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const InterruptGuard guard;
    EXPECT_FALSE(InterruptGuard::requested());
    raise(signal);
    EXPECT_TRUE(InterruptGuard::requested());
  }
}

TEST(InterruptGuard, LeavesIgnoredWhatWasIgnored) {
  const auto before = signal(SIGHUP, SIG_IGN);
  {
    const InterruptGuard guard;
    raise(SIGHUP);
    EXPECT_FALSE(InterruptGuard::requested());
  }
  signal(SIGHUP, before);
}

TEST(InterruptGuard, RestoresTheSignalsAtItsEnd) {
  { const InterruptGuard guard; }
  struct sigaction now {};
  sigaction(SIGINT, nullptr, &now);
  EXPECT_EQ(now.sa_handler, SIG_DFL);
}

TEST(InterruptGuard, WritingToAReaderThatHasGoneFailsOnly) {
  const InterruptGuard guard;
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  EXPECT_EQ(write(ends[1], "x", 1), -1);
  EXPECT_EQ(errno, EPIPE);
  close(ends[1]);
}

}  // namespace omniset::test
