#include <gtest/gtest.h>

#include <atomic>
#include <memory>

#include "core/thread.h"
#include "tests/contract/watched_trace.h"

namespace omniset::test {
namespace {

// Uses its object to its last step, and never says otherwise.
class SelfishThread : public ThreadBase {
 public:
  explicit SelfishThread(std::atomic<bool>& ended)
      : ThreadBase("selfish", 0, nullptr), ended_(ended) {}
  ~SelfishThread() override { terminateIfActive(); }
  void run() override {
    steps_.wait(100);
    ended_ = true;
  }

 private:
  Event steps_{true, false};
  std::atomic<bool>& ended_;
};

TEST(PosixThread, ThatHoldsNoJobIsWaitedForInPlaceOfATermination) {
  WatchedTrace trace;
  std::atomic<bool> ended = false;
  {
    SelfishThread thread(ended);
    thread.start();
  }
  EXPECT_TRUE(ended);
  EXPECT_NE(trace.text().find("thread still active, terminating\n"), std::string::npos);
  EXPECT_NE(trace.text().find("exit thread: "), std::string::npos);
}

// The owner may go before the new thread has made its first step.
TEST(PosixThread, OutlivesAnOwnerThatGoesRightAfterTheStart) {
  struct Job : Code {
    explicit Job(int) {}
    void run() override { stopEvent().wait(20); }
  };
  constexpr int kThreads = 50;
  WatchedTrace trace;
  for (int i = 0; i < kThreads; ++i) {
    Thread<Job, int> thread("brief", 0, i);
    thread.start();
  }
  EXPECT_TRUE(trace.waitFor("exit thread: ", kThreads));
  EXPECT_TRUE(trace.waitFor("thread still active, terminating\n", kThreads));
}

TEST(PosixThread, LeftBehindDestroysItsJobWhenItEnds) {
  struct Job : Code {
    explicit Job(std::shared_ptr<Event> gone) : gone_(std::move(gone)) {}
    ~Job() override { gone_->set(); }
    void run() override { stopEvent().wait(50); }
    std::shared_ptr<Event> gone_;
  };
  WatchedTrace trace;
  const auto gone = std::make_shared<Event>(true, false);
  {
    Thread<Job, std::shared_ptr<Event>> thread("brief", 0, gone);
    thread.start();
  }
  EXPECT_FALSE(gone->wait(0));
  EXPECT_TRUE(gone->wait(60'000));
}

}  // namespace
}  // namespace omniset::test
