#include "ui/workflow/floppy_making.h"

#include <gmock/gmock.h>

#include <utility>
#include <vector>

#include "core/error.h"

namespace omniset::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct FakeFloppyView : FloppyView {
  std::string label() const override { return labelField; }
  void showLabel(const std::string& text) override { labelField = text; }
  void showExplanation(const std::string& text) override { explanation = text; }
  void showStatus(const std::string& text) override { status = text; }
  void showProgress(int percent) override { progress = percent; }
  void showRunning(bool isRunning) override { running = isRunning; }
  void close() override { ++closed; }

  std::string labelField;
  std::string explanation = "as in the template";
  std::string status = "Status";
  int progress = 0;
  bool running = true;
  int closed = 0;
};

struct PlayedFloppyJob : FloppyJob {
  void start(const std::string& label) override {
    if (cannotStart) throw Error("CreateThread");
    labels.push_back(label);
    ended = false;
  }
  std::optional<FloppyProgress> progress() override { return std::exchange(latest, std::nullopt); }
  bool hasEnded() const override { return ended; }
  void requestStop() override { ++stopRequests; }

  void endsWith(int step, const std::string& text) {
    latest = FloppyProgress{step, text};
    ended = true;
  }

  bool cannotStart = false;
  bool ended = true;
  std::optional<FloppyProgress> latest;
  std::vector<std::string> labels;
  int stopRequests = 0;
};

class FloppyMakingTest : public testing::Test {
 protected:
  FloppyMakingTest() { making.begin(); }

  void expectIdle() {
    EXPECT_FALSE(view.running);
    EXPECT_EQ("Another floppy?", view.explanation);
  }

  FakeFloppyView view;
  PlayedFloppyJob job;
  FloppyMaking making{view, job, "veltrona"};
};

}  // namespace

TEST_F(FloppyMakingTest, BeginsWithTheLabelThatWasUsedLast) {
  EXPECT_EQ("veltrona", view.labelField);
  EXPECT_FALSE(view.running);
  EXPECT_EQ("Status", view.status);
  EXPECT_EQ("as in the template", view.explanation);
  making.tick();
  EXPECT_EQ("as in the template", view.explanation);
}

TEST_F(FloppyMakingTest, StartWritesAFloppyWithTheLabelOfTheField) {
  view.labelField = "rack 7";
  making.start();
  EXPECT_THAT(job.labels, ElementsAre("rack 7"));
  EXPECT_TRUE(view.running);
  EXPECT_EQ("Please wait...", view.explanation);
  EXPECT_EQ("Preparing", view.status);
  EXPECT_EQ("rack 7", making.label());
}

TEST_F(FloppyMakingTest, FloppyWithoutALabelIsUnnamed) {
  view.labelField = "";
  making.start();
  EXPECT_THAT(job.labels, ElementsAre("Unnamed"));
  EXPECT_EQ("Unnamed", making.label());
  EXPECT_EQ("", view.labelField);
}

TEST_F(FloppyMakingTest, LabelThatWasOnlyTypedIsNotInUse) {
  view.labelField = "rack 7";
  making.close();
  EXPECT_EQ("veltrona", making.label());
}

TEST_F(FloppyMakingTest, TickShowsTheLatestStep) {
  making.start();
  making.tick();
  EXPECT_EQ("Preparing", view.status);
  EXPECT_EQ(0, view.progress);
  job.latest = FloppyProgress{4, "Copying system files..."};
  making.tick();
  EXPECT_EQ("Copying system files...", view.status);
  EXPECT_EQ(40, view.progress);
  EXPECT_TRUE(view.running);
  EXPECT_EQ("Please wait...", view.explanation);
}

TEST_F(FloppyMakingTest, CompletedFloppyMayBeFollowedByAnother) {
  making.start();
  job.endsWith(10, "Completed");
  making.tick();
  EXPECT_EQ("Completed", view.status);
  EXPECT_EQ(100, view.progress);
  expectIdle();
  making.start();
  EXPECT_EQ(2u, job.labels.size());
  EXPECT_EQ(0, view.progress);
  EXPECT_EQ("Preparing", view.status);
  EXPECT_TRUE(view.running);
}

TEST_F(FloppyMakingTest, FailureIsShownInTheStatusLine) {
  making.start();
  job.endsWith(2, "Cannot create file");
  making.tick();
  EXPECT_EQ("Cannot create file", view.status);
  EXPECT_EQ(20, view.progress);
  expectIdle();
  making.tick();
  EXPECT_EQ("Cannot create file", view.status);
}

TEST_F(FloppyMakingTest, CancelAsksTheJobToStopAndSaysSoWhenItHasEnded) {
  making.start();
  making.cancel();
  EXPECT_EQ(1, job.stopRequests);
  EXPECT_TRUE(view.running);
  making.tick();
  EXPECT_EQ("Preparing", view.status);
  job.endsWith(1, "Canceled");
  making.tick();
  EXPECT_EQ("Canceled", view.status);
  expectIdle();
}

TEST_F(FloppyMakingTest, CanceledFloppyThatFailedMeanwhileIsCanceledToo) {
  making.start();
  making.cancel();
  job.endsWith(1, "Format failed");
  making.tick();
  EXPECT_EQ("Canceled", view.status);
  making.start();
  job.endsWith(1, "Format failed");
  making.tick();
  EXPECT_EQ("Format failed", view.status);
}

TEST_F(FloppyMakingTest, CancelWithoutAJobDoesNothing) {
  making.cancel();
  making.tick();
  EXPECT_EQ(0, job.stopRequests);
  EXPECT_EQ("Status", view.status);
}

// The Return key reaches a default button that is disabled.
TEST_F(FloppyMakingTest, SecondStartDuringAJobDoesNothing) {
  making.start();
  making.start();
  EXPECT_EQ(1u, job.labels.size());
}

TEST_F(FloppyMakingTest, ClosesAtOnceWithoutAJob) {
  making.close();
  EXPECT_EQ(1, view.closed);
  EXPECT_EQ(0, job.stopRequests);
}

TEST_F(FloppyMakingTest, ClosingDuringAJobStopsItAndWaitsForItsEnd) {
  making.start();
  making.close();
  making.close();
  EXPECT_EQ(0, view.closed);
  EXPECT_GE(job.stopRequests, 1);
  making.tick();
  EXPECT_EQ(0, view.closed);
  job.endsWith(1, "Canceled");
  making.tick();
  EXPECT_EQ(1, view.closed);
}

TEST_F(FloppyMakingTest, ThreadThatCannotBeStartedIsRaised) {
  job.cannotStart = true;
  EXPECT_THROW(making.start(), Error);
  making.tick();
  EXPECT_EQ("Preparing", view.status);
}

}  // namespace omniset::test
