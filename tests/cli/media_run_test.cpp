#include "cli/media_run.h"

#include <gtest/gtest.h>

#include <deque>

#include "tests/fakes/fake_clock.h"

namespace omniset::test {

namespace {

// Tells its states one by one, a turn each, then ends.
class PlayedJob : public MediaJob {
 public:
  explicit PlayedJob(std::deque<MediaState> states) : states_(std::move(states)) {}

  // An end that is not seen before the wait for the last state.
  bool endsLate = false;
  int silentTurns = 0;
  int stopped = 0;

  std::optional<MediaState> news(int) override {
    if (silentTurns > 0 && states_.size() == 1) {
      --silentTurns;
      return std::nullopt;
    }
    if (states_.empty()) return std::nullopt;
    MediaState next = states_.front();
    states_.pop_front();
    return next;
  }
  bool hasEnded() const override {
    return states_.empty() || (!endsLate && states_.size() == 1 && silentTurns == 0);
  }
  void stop() override {
    ++stopped;
    silentTurns = 0;
    states_ = {{.text = "Cannot create file"}};
  }

 private:
  std::deque<MediaState> states_;
};

class Told : public MediaListener {
 public:
  void changed(const MediaState& state) override { texts.push_back(state.text); }
  void tick(Micros) override { ++ticks; }
  void ended(const MediaOutcome& outcome) override { texts.push_back("end: " + outcome.text); }

  std::vector<std::string> texts;
  int ticks = 0;
};

bool never() {
  return false;
}

using Texts = std::vector<std::string>;

const MediaState kDone{.text = "Completed", .isFinished = true};

}  // namespace

TEST(FollowMedia, TellsEachStateAndTheLastAsTheOutcome) {
  PlayedJob job({{.text = "one"}, {.text = "two"}, kDone});
  Told told;
  const MediaOutcome outcome = followMedia(job, {&told}, FakeClock(), never);
  EXPECT_TRUE(outcome.isDone);
  EXPECT_EQ(outcome.text, "Completed");
  EXPECT_EQ(told.texts, (Texts{"one", "two", "end: Completed"}));
}

TEST(FollowMedia, EndSeenOnlyAfterTheLastStateChangesNothing) {
  PlayedJob job({{.text = "one"}, kDone});
  job.endsLate = true;
  Told told;
  EXPECT_TRUE(followMedia(job, {&told}, FakeClock(), never).isDone);
  EXPECT_EQ(told.texts, (Texts{"one", "end: Completed"}));
}

TEST(FollowMedia, FailureIsTheOutcome) {
  PlayedJob job({{.text = "one"}, {.text = "Cannot open device"}});
  Told told;
  const MediaOutcome outcome = followMedia(job, {&told}, FakeClock(), never);
  EXPECT_FALSE(outcome.isDone);
  EXPECT_FALSE(outcome.isCanceled);
  EXPECT_EQ(told.texts, (Texts{"one", "end: Cannot open device"}));
}

TEST(FollowMedia, TicksWhileNothingIsNew) {
  PlayedJob job({{.text = "one"}, kDone});
  job.silentTurns = 5;
  Told told;
  followMedia(job, {&told}, FakeClock(), never);
  EXPECT_GE(told.ticks, 6);
  EXPECT_EQ(told.texts, (Texts{"one", "end: Completed"}));
}

// The program that ran for the job may have been ended by the same Ctrl-C: what the job says of
// that is not the reason.
TEST(FollowMedia, InterruptStopsTheJobOnceAndIsTheReason) {
  PlayedJob job({{.text = "one"}, kDone});
  job.silentTurns = 1'000;
  Told told;
  const MediaOutcome outcome = followMedia(job, {&told}, FakeClock(), [] { return true; });
  EXPECT_EQ(job.stopped, 1);
  EXPECT_TRUE(outcome.isCanceled);
  EXPECT_FALSE(outcome.isDone);
  EXPECT_EQ(outcome.text, "Canceled");
}

TEST(FollowMedia, InterruptOfAJobThatIsDoneComesTooLate) {
  class DoneMeanwhile : public PlayedJob {
   public:
    DoneMeanwhile() : PlayedJob({{.text = "one"}, kDone}) { silentTurns = 3; }
    void stop() override { silentTurns = 0; }
  } job;
  Told told;
  const MediaOutcome outcome = followMedia(job, {&told}, FakeClock(), [] { return true; });
  EXPECT_TRUE(outcome.isDone);
  EXPECT_FALSE(outcome.isCanceled);
}

// A device may hang in the system: the command ends without it.
TEST(FollowMedia, JobThatDoesNotStopIsLeft) {
  class Hanging : public MediaJob {
   public:
    std::optional<MediaState> news(int) override { return std::nullopt; }
    bool hasEnded() const override { return false; }
    void stop() override {}
  } job;
  EXPECT_TRUE(followMedia(job, {}, FakeClock(), [] { return true; }).isCanceled);
}

}  // namespace omniset::test
