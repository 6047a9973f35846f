#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "core/error.h"
#include "core/thread.h"
#include "tests/contract/raised_text.h"
#include "tests/contract/watched_trace.h"

namespace omniset::test {
namespace {

// What a stubborn job and its test share; lives as long as either.
struct Gate {
  Event running{true, false};
  Event open{true, false};
  Event jobGone{true, false};
};

// Ignores its stop event until the gate opens.
class StubbornJob : public Code {
 public:
  explicit StubbornJob(std::shared_ptr<Gate> gate) : gate_(std::move(gate)) {}
  ~StubbornJob() override { gate_->jobGone.set(); }
  void run() override {
    gate_->running.set();
    gate_->open.wait();
  }

 private:
  std::shared_ptr<Gate> gate_;
};

class StubbornThread : public ::testing::Test {
 protected:
  using Stubborn = Thread<StubbornJob, std::shared_ptr<Gate>>;

  std::unique_ptr<Stubborn> started(int stopTimeoutMs) {
    auto thread = std::make_unique<Stubborn>("PXE Booter", stopTimeoutMs, gate_);
    thread->start();
    gate_->running.wait();
    return thread;
  }

  // The trace after its first line, which tells of the start.
  std::string afterStart() const {
    const std::string text = trace_.text();
    return text.substr(text.find('\n') + 1);
  }

  // A job that outlived its thread object (where threads cannot be ended from outside) must not
  // write into the trace of another test.
  void TearDown() override {
    gate_->open.set();
    if (jobWentWithThread_) return;
    EXPECT_TRUE(trace_.waitFor("exit thread: ", starts_));
  }

  void destroy(std::unique_ptr<Stubborn>& thread) {
    thread.reset();
    jobWentWithThread_ = gate_->jobGone.wait(0);
  }

  std::shared_ptr<Gate> gate_ = std::make_shared<Gate>();
  WatchedTrace trace_;
  int starts_ = 1;
  bool jobWentWithThread_ = true;
};

TEST_F(StubbornThread, IsReportedByStopAndLeftRunning) {
  auto thread = started(20);
  thread->stop();
  EXPECT_EQ(afterStart(), "ignoring 'terminate': PXE Booter\n");
  EXPECT_EQ(thread->exitCode(), ThreadBase::kStillActive);
  EXPECT_TRUE(thread->job().stopEvent().wait(0));
  gate_->open.set();
  EXPECT_TRUE(trace_.waitFor("exit thread: "));
}

TEST_F(StubbornThread, WithoutAnyStopTimeoutIsReportedAtOnce) {
  auto thread = started(0);
  thread->stop();
  EXPECT_EQ(afterStart(), "ignoring 'terminate': PXE Booter\n");
  destroy(thread);
}

TEST_F(StubbornThread, IsTerminatedOnlyWhenItsObjectIsDestroyed) {
  auto thread = started(20);
  thread->stop();
  destroy(thread);
  EXPECT_EQ(afterStart(),
            "ignoring 'terminate': PXE Booter\n"
            "thread still active, terminating\n");
}

TEST_F(StubbornThread, DestroyedWithoutAStopIsTerminated) {
  auto thread = started(20);
  destroy(thread);
  EXPECT_EQ(afterStart(), "thread still active, terminating\n");
}

TEST_F(StubbornThread, CountsAsStoppedAfterAStop) {
  auto thread = started(0);
  thread->stop();
  EXPECT_EQ(raisedText<std::runtime_error>([&] { thread->stop(); }), "stopping stopped thread");
  destroy(thread);
}

TEST_F(StubbornThread, ThatEndsLaterIsSeenAsFinishedAndNotTerminated) {
  auto thread = started(0);
  thread->stop();
  gate_->open.set();
  while (thread->exitCode() == ThreadBase::kStillActive) Event(true, false).wait(1);
  EXPECT_EQ(thread->exitCode(), 0u);
  destroy(thread);
  EXPECT_EQ(trace_.text().find("terminating"), std::string::npos);
}

TEST_F(StubbornThread, IsWaitedForWithoutLimitWhenTheTimeoutIsForever) {
  auto thread = started(kForever);
  std::thread opener([&] {
    thread->job().stopEvent().wait();
    Event(true, false).wait(50);
    gate_->open.set();
  });
  thread->stop();
  opener.join();
  EXPECT_EQ(thread->exitCode(), 0u);
  EXPECT_EQ(trace_.text().find("ignoring"), std::string::npos);
}

TEST_F(StubbornThread, StartedAnewIsTerminatedInBothItsThreads) {
  auto thread = started(0);
  thread->stop();
  gate_->running.reset();
  thread->start();
  starts_ = 2;
  gate_->running.wait();
  const auto before = trace_.text().size();
  destroy(thread);
  EXPECT_EQ(trace_.text().substr(before),
            "thread still active, terminating\n"
            "thread still active, terminating\n");
}

// A thread without a stop event.
class PlainThread : public ThreadBase {
 public:
  PlainThread(Event& mayEnd, int stopTimeoutMs)
      : ThreadBase("plain", stopTimeoutMs, nullptr), mayEnd_(mayEnd) {}
  ~PlainThread() override { terminateIfActive(); }
  void run() override { mayEnd_.wait(); }

 private:
  Event& mayEnd_;
};

TEST(ThreadContract, WithoutAStopEventIsOnlyWaitedFor) {
  WatchedTrace trace;
  Event mayEnd(true, false);
  PlainThread thread(mayEnd, 20);
  thread.start();
  thread.stop();
  EXPECT_TRUE(trace.waitFor("ignoring 'terminate': plain\n"));
  mayEnd.set();
  EXPECT_TRUE(trace.waitFor("exit thread: "));
  while (thread.exitCode() == ThreadBase::kStillActive) Event(true, false).wait(1);
}

TEST(ThreadContract, IsStillActiveWhileItRuns) {
  WatchedTrace trace;
  Event mayEnd(true, false);
  PlainThread thread(mayEnd, 60'000);
  thread.start();
  EXPECT_EQ(thread.exitCode(), ThreadBase::kStillActive);
  EXPECT_EQ(thread.exitCode(), 259u);
  mayEnd.set();
  thread.stop();
  EXPECT_EQ(thread.exitCode(), 0u);
}

TEST(ThreadContract, ExitCodeOfAThreadNeverStartedRaises) {
  Event mayEnd(true, false);
  const PlainThread thread(mayEnd, 60'000);
  const std::string text = raisedText<Error>([&] { thread.exitCode(); });
  EXPECT_TRUE(text.starts_with("GetExitCodeThread: ")) << text;
  EXPECT_EQ(text.find("Error code: 0"), std::string::npos) << text;
}

TEST(ThreadContract, ManyStartAndEndSafely) {
  WatchedTrace trace;
  struct Job : Code {
    explicit Job(int) {}
    void run() override {}
  };
  for (int i = 0; i < 300; ++i) {
    Thread<Job, int> thread("brief", 60'000, i);
    thread.start();
    thread.stop();
  }
  EXPECT_EQ(trace.text().find("ignoring"), std::string::npos);
}

}  // namespace
}  // namespace omniset::test
