#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>

#include "core/interrupt.h"

namespace omniset::test {

namespace {

// A signal's handling while it lives, whatever the tests were started with (nohup, a shell's "&").
class Handling {
 public:
  Handling(int number, void (*handler)(int)) : number_(number), before_(signal(number, handler)) {}
  ~Handling() { signal(number_, before_); }
  Handling(const Handling&) = delete;
  Handling& operator=(const Handling&) = delete;

 private:
  int number_;
  void (*before_)(int);
};

}  // namespace

TEST(InterruptGuard, RemembersEachRequestToEnd) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    const Handling usual(number, SIG_DFL);
    const InterruptGuard guard;
    EXPECT_FALSE(InterruptGuard::requested());
    raise(number);
    EXPECT_TRUE(InterruptGuard::requested());
  }
}

TEST(InterruptGuard, LeavesIgnoredWhatWasIgnored) {
  const Handling ignored(SIGHUP, SIG_IGN);
  const InterruptGuard guard;
  raise(SIGHUP);
  EXPECT_FALSE(InterruptGuard::requested());
}

TEST(InterruptGuard, RestoresTheSignalsAtItsEnd) {
  const Handling usual(SIGINT, SIG_DFL);
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
