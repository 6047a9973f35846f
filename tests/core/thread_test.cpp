#include "core/thread.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <thread>

#include "core/error.h"
#include "tests/fakes/captured_trace.h"

namespace omniset::test {
namespace {

constexpr int kLongMs = 60'000;

using Body = std::function<void(Code&)>;

class BodyJob : public Code {
 public:
  explicit BodyJob(Body body) : body_(std::move(body)) {}
  void run() override { body_(*this); }

 private:
  Body body_;
};

class BodyThread : public Thread<BodyJob, Body> {
 public:
  explicit BodyThread(Body body) : Thread("Router installer", kLongMs, std::move(body)) {}
};

void untilStopped(Code& job) {
  job.stopEvent().wait();
}

// The id that the trace gives for the thread started first.
std::string tracedId(const std::string& trace) {
  constexpr std::string_view kStart = "start thread: ";
  if (!trace.starts_with(kStart)) return "(no start line)";
  return trace.substr(kStart.size(), trace.find('\n') - kStart.size());
}

// The text of the std::runtime_error that `action` raises.
template <class Action>
std::string runtimeErrorOf(Action action) {
  try {
    action();
  } catch (const std::runtime_error& e) {
    return e.what();
  }
  return "(nothing raised)";
}

// The whole trace of a job that begins after its start was traced.
std::string traceOf(const Body& body) {
  CapturedTrace captured;
  BodyThread thread([&body](Code& job) {
    untilStopped(job);
    body(job);
  });
  thread.start();
  thread.stop();
  return captured.text();
}

TEST(Thread, RunsItsJobInAnotherThread) {
  const SilentTrace silent;
  std::thread::id ranIn;
  BodyThread thread([&](Code&) { ranIn = std::this_thread::get_id(); });
  thread.start();
  thread.stop();
  EXPECT_NE(ranIn, std::thread::id());
  EXPECT_NE(ranIn, std::this_thread::get_id());
}

TEST(Thread, RunsNothingBeforeItIsStarted) {
  bool ran = false;
  {
    BodyThread thread([&](Code&) { ran = true; });
  }
  EXPECT_FALSE(ran);
}

TEST(Thread, ConstructsTheJobFromItsArgumentAndWhatIsHandedIn) {
  struct Job : Code {
    Job(int number, std::string text, int& sum)
        : number_(number), text_(std::move(text)), sum_(sum) {}
    void run() override { sum_ = number_ + static_cast<int>(text_.size()); }
    int number_;
    std::string text_;
    int& sum_;
  };
  const SilentTrace silent;
  int sum = 0;
  Thread<Job, int> thread("PXE Booter", kLongMs, 40, std::string("ab"), sum);
  thread.start();
  thread.stop();
  EXPECT_EQ(sum, 42);
  EXPECT_EQ(thread.job().number_, 40);
}

TEST(Thread, KeepsItsName) {
  EXPECT_EQ(BodyThread(untilStopped).name(), "Router installer");
}

TEST(Thread, TracesItsStartAndItsExitWithTheSameId) {
  const std::string trace = traceOf([](Code&) {});
  const std::string id = tracedId(trace);
  EXPECT_EQ(trace, "start thread: " + id + "\nexit thread: " + id + "\n");
}

TEST(Thread, TracesAnExceptionOfItsJobWithNameAndId) {
  const std::string trace = traceOf([](Code&) { throw std::runtime_error("bad luck"); });
  const std::string id = tracedId(trace);
  EXPECT_EQ(trace, "start thread: " + id + "\nIn thread 'Router installer' (id " + id +
                       "): bad luck\nexit thread: " + id + "\n");
}

TEST(Thread, TracesAnErrorOfItsJobWithAllItsLines) {
  std::string what;
  const std::string trace = traceOf([&](Code&) {
    const Error error("Event SetEvent");
    what = error.what();
    throw error;
  });
  EXPECT_NE(trace.find("): " + what + "\nexit thread: "), std::string::npos) << trace;
}

TEST(Thread, TracesAnythingElseItsJobThrowsAsUnknown) {
  const std::string trace = traceOf([](Code&) { throw 7; });
  const std::string id = tracedId(trace);
  EXPECT_EQ(trace, "start thread: " + id + "\nIn thread 'Router installer' (id " + id +
                       "): Unknown exception\nexit thread: " + id + "\n");
}

TEST(Thread, WhoseJobThrewIsSeenAsFinished) {
  const SilentTrace silent;
  BodyThread thread([](Code&) { throw std::runtime_error("bad luck"); });
  thread.start();
  thread.stop();
  EXPECT_EQ(thread.exitCode(), 0u);
}

TEST(Thread, StartedTwiceRaises) {
  const SilentTrace silent;
  int runs = 0;
  BodyThread thread([&](Code& job) {
    ++runs;
    untilStopped(job);
  });
  thread.start();
  EXPECT_EQ(runtimeErrorOf([&] { thread.start(); }), "thread already started");
  thread.stop();
  EXPECT_EQ(runs, 1);
}

TEST(Thread, WhoseJobEndedIsStillStarted) {
  const SilentTrace silent;
  BodyThread thread([](Code&) {});
  thread.start();
  while (thread.exitCode() == ThreadBase::kStillActive) std::this_thread::yield();
  EXPECT_EQ(runtimeErrorOf([&] { thread.start(); }), "thread already started");
  thread.stop();
}

TEST(Thread, StoppedWithoutAStartRaises) {
  BodyThread thread(untilStopped);
  EXPECT_EQ(runtimeErrorOf([&] { thread.stop(); }), "stopping stopped thread");
  EXPECT_FALSE(thread.job().stopEvent().wait(0)) << "the stop event stays as it was";
}

TEST(Thread, StoppedTwiceRaises) {
  const SilentTrace silent;
  BodyThread thread(untilStopped);
  thread.start();
  thread.stop();
  EXPECT_EQ(runtimeErrorOf([&] { thread.stop(); }), "stopping stopped thread");
}

TEST(Thread, StopSignalsTheJobForGood) {
  const SilentTrace silent;
  BodyThread thread([](Code& job) {
    untilStopped(job);
    untilStopped(job);
  });
  thread.start();
  thread.stop();
  EXPECT_TRUE(thread.job().stopEvent().wait(0));
  EXPECT_EQ(thread.exitCode(), 0u);
}

TEST(Thread, RunsAgainAfterAStop) {
  CapturedTrace captured;
  int runs = 0;
  BodyThread thread([&](Code&) { ++runs; });
  for (int i = 0; i < 2; ++i) {
    thread.start();
    thread.stop();
  }
  EXPECT_EQ(runs, 2);
  EXPECT_FALSE(captured.contains("ignoring"));
}

TEST(Thread, DestroyedAfterItsJobEndedSaysNothing) {
  CapturedTrace captured;
  {
    BodyThread thread([](Code&) {});
    thread.start();
    while (thread.exitCode() == ThreadBase::kStillActive) std::this_thread::yield();
  }
  EXPECT_FALSE(captured.contains("terminating"));
}

TEST(Thread, DestroyedUnstartedSaysNothing) {
  const CapturedTrace captured;
  { BodyThread thread(untilStopped); }
  EXPECT_EQ(captured.text(), "");
}

TEST(Thread, DestroysItsJob) {
  struct Job : Code {
    explicit Job(bool* destroyed) : destroyed_(destroyed) {}
    ~Job() override { *destroyed_ = true; }
    void run() override {}
    bool* destroyed_;
  };
  const SilentTrace silent;
  bool destroyed = false;
  {
    Thread<Job, bool*> thread("PXE Booter", kLongMs, &destroyed);
    thread.start();
    thread.stop();
    EXPECT_FALSE(destroyed);
  }
  EXPECT_TRUE(destroyed);
}

TEST(Thread, EachHasAnIdOfItsOwn) {
  CapturedTrace captured;
  BodyThread first(untilStopped);
  BodyThread second(untilStopped);
  first.start();
  const std::string firstId = tracedId(captured.text());
  captured.clear();
  second.start();
  const std::string secondId = tracedId(captured.text());
  first.stop();
  second.stop();
  EXPECT_NE(firstId, secondId);
}

}  // namespace
}  // namespace omniset::test
