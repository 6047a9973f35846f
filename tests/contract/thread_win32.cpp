#include <windows.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>

#include "core/thread.h"
#include "tests/contract/watched_trace.h"

namespace omniset::test {
namespace {

using Counter = std::shared_ptr<std::atomic<long>>;

class CountingJob : public Code {
 public:
  explicit CountingJob(Counter counter) : counter_(std::move(counter)) {}
  void run() override {
    for (;;) ++*counter_;
  }

 private:
  Counter counter_;
};

TEST(Win32Thread, IsGoneWhenItsObjectIs) {
  WatchedTrace trace;
  const auto counter = std::make_shared<std::atomic<long>>(0);
  {
    Thread<CountingJob, Counter> thread("counting", 0, counter);
    thread.start();
    while (*counter == 0) Sleep(1);
  }
  const long after = *counter;
  Sleep(50);
  EXPECT_EQ(*counter, after);
  EXPECT_EQ(trace.text().find("exit thread: "), std::string::npos);
}

}  // namespace
}  // namespace omniset::test
