#include "core/startup.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/error.h"
#include "tests/fakes/captured_trace.h"

namespace omniset::test {

namespace {

using Steps = std::vector<std::string>;

class NotedSystem : public StartupSystem {
 public:
  bool claimSingleInstance() override { return note("claim"), claimed; }
  void startSockets() override { note("sockets"); }
  void cleanUpSockets() override { note("clean up"); }
  void startControls() override { note("controls"); }
  std::unique_ptr<Desktop> makeWindow() override {
    note("window");
    return std::make_unique<NotedWindow>(*this);
  }
  void tell(const std::string& text, const char* caption, unsigned style) override {
    boxes.push_back(std::string(caption) + "/" + text + "/" + std::to_string(style));
  }

  // Makes the step fail.
  void failAt(const std::string& step, std::function<void()> raise) {
    failing = step;
    fail = std::move(raise);
  }

  Steps steps;
  Steps boxes;
  bool claimed = true;

 private:
  class NotedWindow : public Desktop {
   public:
    explicit NotedWindow(NotedSystem& system) : system_(system) {}
    ~NotedWindow() override { system_.steps.push_back("window gone"); }
    int runMessageLoop() override {
      system_.note("loop");
      return 7;
    }
    void shutDown() override { system_.note("shut down"); }

   private:
    NotedSystem& system_;
  };

  void note(const std::string& step) {
    steps.push_back(step);
    if (step == failing) fail();
  }

  std::string failing;
  std::function<void()> fail;
};

void raiseFailure() {
  throw Failure("it broke");
}

const std::string kExceptionBox = "Exception/it broke/48";

}  // namespace

TEST(Startup, StartsAndStopsInOrder) {
  CapturedTrace trace;
  NotedSystem system;
  EXPECT_EQ(7, runProgram(system));
  EXPECT_EQ((Steps{"claim", "sockets", "controls", "window", "loop", "shut down", "window gone",
                   "clean up"}),
            system.steps);
  EXPECT_EQ("run out\nexit\n", trace.text());
  EXPECT_TRUE(system.boxes.empty());
}

TEST(Startup, SecondInstanceSaysSoAndTouchesNothing) {
  CapturedTrace trace;
  NotedSystem system;
  system.claimed = false;
  EXPECT_EQ(0, runProgram(system));
  EXPECT_EQ(Steps{"claim"}, system.steps);
  EXPECT_EQ(Steps{"Error/Veltrona Router Install Server is already running/0"}, system.boxes);
  EXPECT_EQ("", trace.text());
}

TEST(Startup, FailureBeforeTheWindowIsShownAndSocketsAreCleanedUp) {
  for (const char* step : {"claim", "sockets"}) {
    CapturedTrace trace;
    NotedSystem system;
    system.failAt(step, raiseFailure);
    EXPECT_EQ(-1, runProgram(system));
    EXPECT_EQ(Steps{kExceptionBox}, system.boxes);
    EXPECT_EQ("clean up", system.steps.back());
    EXPECT_EQ("exit\n", trace.text());
  }
}

TEST(Startup, FailureWhileTheWindowIsBuiltGivesMinusOne) {
  CapturedTrace trace;
  NotedSystem system;
  system.failAt("window", raiseFailure);
  EXPECT_EQ(-1, runProgram(system));
  EXPECT_EQ(Steps{kExceptionBox}, system.boxes);
  EXPECT_EQ((Steps{"claim", "sockets", "controls", "window", "clean up"}), system.steps);
}

TEST(Startup, FailureInTheLoopDestroysTheWindowFirst) {
  CapturedTrace trace;
  NotedSystem system;
  system.failAt("loop", raiseFailure);
  EXPECT_EQ(-1, runProgram(system));
  EXPECT_EQ((Steps{"claim", "sockets", "controls", "window", "loop", "window gone", "clean up"}),
            system.steps);
  EXPECT_EQ(Steps{kExceptionBox}, system.boxes);
  EXPECT_EQ("exit\n", trace.text());
}

TEST(Startup, FailureWhileShuttingDownKeepsTheLoopsCode) {
  CapturedTrace trace;
  NotedSystem system;
  system.failAt("shut down", raiseFailure);
  EXPECT_EQ(7, runProgram(system));
  EXPECT_EQ(Steps{kExceptionBox}, system.boxes);
  EXPECT_EQ("run out\nexit\n", trace.text());
}

TEST(Startup, AnUnknownExceptionHasItsOwnBox) {
  CapturedTrace trace;
  NotedSystem system;
  system.failAt("loop", [] { throw 1; });
  EXPECT_EQ(-1, runProgram(system));
  EXPECT_EQ(Steps{"Exception/Unknown exception/16"}, system.boxes);
}

}  // namespace omniset::test
