#include <windows.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>

#include "core/error.h"
#include "core/thread.h"
#include "core/trace.h"
#include "core/udp_socket.h"
#include "tests/contract/raised_text.h"
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

// Takes and gives back all that threads share, and waits in between.
class BusyJob : public Code {
 public:
  explicit BusyJob(std::shared_ptr<Event> begun) : begun_(std::move(begun)) {}
  void run() override {
    for (;;) {
      for (int i = 0; i < 20; ++i) useWhatAllShare();
      begun_->set();
      Event(true, false).wait(1);
    }
  }

  static void useWhatAllShare() {
    traceLine(std::string(100, '.'));
    const auto socket = makeUdpSocket();
    socket->open("no socket");
  }

 private:
  std::shared_ptr<Event> begun_;
};

TEST(Win32Thread, EndedAtAnyMomentLeavesNothingLocked) {
  const WatchedTrace trace;
  const SocketLibrary sockets;
  for (int i = 0; i < 50; ++i) {
    const auto begun = std::make_shared<Event>(true, false);
    {
      Thread<BusyJob, std::shared_ptr<Event>> thread("busy", 0, begun);
      thread.start();
      ASSERT_TRUE(begun->wait(10'000));
      Sleep(static_cast<DWORD>(i % 5));
    }
    BusyJob::useWhatAllShare();
  }
}

// A wait's error is what its caller reports.
TEST(Win32Thread, KeepsTheErrorOfAWaitThatFails) {
  struct Job : Code {
    explicit Job(std::shared_ptr<std::string> text) : text_(std::move(text)) {}
    void run() override {
      *text_ = raisedText<SocketExc>([] { makeUdpSocket()->waitReadable(kSecond, "no wait"); });
    }
    std::shared_ptr<std::string> text_;
  };
  const WatchedTrace trace;
  const SocketLibrary sockets;
  const auto text = std::make_shared<std::string>();
  Thread<Job, std::shared_ptr<std::string>> thread("failing", 60'000, text);
  thread.start();
  thread.stop();
  EXPECT_NE(text->find("10038"), std::string::npos) << *text;
}

}  // namespace
}  // namespace omniset::test
