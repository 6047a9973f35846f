#include "cli/progress_display.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace omniset::test {

namespace {

MacAddress mac(std::uint8_t number) {
  return {{2, 0, 0, 0, 1, number}};
}

RouterState state(std::uint8_t number, std::int64_t bytes, const std::string& text = "sending") {
  return {mac(number), "lab", RouterStatus::kInstalling, text, bytes, 1'000};
}

// What a terminal of a hundred columns shows after the output, line by line.
class Screen {
 public:
  void write(const std::string& output) {
    for (std::size_t i = 0; i < output.size(); ++i) {
      if (output[i] == '\x1b') {
        const std::size_t end = output.find_first_of("AKJ", i);
        control(output.substr(i + 2, end - i - 2), output[end]);
        i = end;
      } else if (output[i] == '\n') {
        ++row_;
        column_ = 0;
      } else if (output[i] == '\r') {
        column_ = 0;
      } else {
        put(output[i]);
      }
    }
  }

  std::vector<std::string> lines() const {
    std::vector<std::string> shown = lines_;
    while (!shown.empty() && shown.back().empty()) shown.pop_back();
    return shown;
  }

 private:
  std::string& line() {
    if (lines_.size() <= row_) lines_.resize(row_ + 1);
    return lines_[row_];
  }
  void put(char c) {
    std::string& text = line();
    if (text.size() <= column_) text.resize(column_ + 1, ' ');
    text[column_++] = c;
  }
  void control(const std::string& number, char what) {
    if (what == 'A') row_ -= std::stoul(number);
    if (what == 'K' || what == 'J') line().resize(std::min(line().size(), column_));
    if (what == 'J') lines_.resize(row_ + 1);
  }

  std::vector<std::string> lines_;
  std::size_t row_ = 0;
  std::size_t column_ = 0;
};

class LiveProgressTest : public testing::Test {
 protected:
  std::vector<std::string> shown() {
    screen.write(err.str());
    err.str("");
    return screen.lines();
  }

  std::optional<TerminalSize> size = TerminalSize{100, 10};
  std::ostringstream err;
  Screen screen;
  LiveProgress progress{err, [this] { return size; }, true};
};

}  // namespace

TEST(PlainProgress, TellsEachStatusOnce) {
  std::ostringstream err;
  PlainProgress progress(err);
  progress.routerSeen(mac(1), "lab\x1b");
  progress.statusChanged(state(1, 0, "Sending offer..."));
  progress.statusChanged(state(1, 10, "Sending offer..."));
  progress.routerDone(mac(1), true, "finished");
  EXPECT_EQ(err.str(),
            "02:00:00:00:01:01  announced itself: lab?\n"
            "02:00:00:00:01:01  Installing: Sending offer...\n"
            "02:00:00:00:01:01  done: finished\n");
}

TEST(PlainProgress, TellsEachTenthOfTheBytes) {
  std::ostringstream err;
  PlainProgress progress(err);
  for (int bytes = 0; bytes <= 1000; bytes += 25) {
    progress.statusChanged(state(1, bytes));
    progress.tick(0);
  }
  const std::string text = err.str();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 11);
  EXPECT_NE(text.find("02:00:00:00:01:01  30 %, 0.3 of 1.0 kB\n"), std::string::npos) << text;
  EXPECT_NE(text.find("100 %"), std::string::npos);
}

TEST(PlainProgress, LeavesTheLastTextToTheResult) {
  std::ostringstream err;
  PlainProgress progress(err);
  RouterState last = state(1, 0, "finished");
  last.status = RouterStatus::kFinished;
  progress.statusChanged(last);
  EXPECT_EQ(err.str(), "");
}

TEST(PlainProgress, TellsTheRateOnceItIsKnown) {
  std::ostringstream err;
  PlainProgress progress(err);
  progress.statusChanged(state(1, 10));
  progress.tick(0);
  progress.statusChanged(state(1, 110));
  progress.tick(2 * kSecond);
  EXPECT_NE(err.str().find("10 %, 0.1 of 1.0 kB, 50 B/s"), std::string::npos) << err.str();
}

TEST(PlainProgress, NoteIsALine) {
  std::ostringstream err;
  PlainProgress(err).note("kernel sent");
  EXPECT_EQ(err.str(), "kernel sent\n");
}

TEST(PlainProgress, WritesNoEscapeSequences) {
  std::ostringstream err;
  PlainProgress progress(err);
  progress.routerSeen(mac(1), "\x1b[2J");
  progress.statusChanged(state(1, 0, "\x1b[2J"));
  progress.routerDone(mac(1), false, "\x1b[2J");
  EXPECT_EQ(err.str().find('\x1b'), std::string::npos);
}

TEST_F(LiveProgressTest, RedrawsTheLinesInPlace) {
  progress.statusChanged(state(1, 0, "Sending offer..."));
  progress.statusChanged(state(2, 0, "Partitioning and formating harddrive..."));
  progress.tick(0);
  ASSERT_EQ(shown().size(), 2u);
  EXPECT_EQ(shown()[0], "02:00:00:00:01:01  Installing  Sending offer...");
  progress.statusChanged(state(1, 500));
  progress.statusChanged(state(2, 0, "short"));
  progress.tick(kSecond);
  ASSERT_EQ(shown().size(), 2u);
  EXPECT_TRUE(shown()[0].starts_with("02:00:00:00:01:01  Installing   50 %"));
  EXPECT_EQ(shown()[1], "02:00:00:00:01:02  Installing  short");
}

TEST_F(LiveProgressTest, DrawsFiveTimesASecond) {
  progress.statusChanged(state(1, 0));
  int drawn = 0;
  for (Micros now = 0; now < kSecond; now += kSecond / 100) {
    err.str("");
    progress.tick(now);
    if (!err.str().empty()) ++drawn;
  }
  EXPECT_EQ(drawn, 5);
}

TEST_F(LiveProgressTest, FinishedRouterLeavesItsResultAboveTheLiveLines) {
  progress.statusChanged(state(1, 0));
  progress.statusChanged(state(2, 0));
  progress.tick(0);
  progress.routerDone(mac(1), true, "finished");
  EXPECT_EQ(shown(), (std::vector<std::string>{"02:00:00:00:01:01  ok      finished"}));
  progress.tick(kMillisecond);
  EXPECT_EQ(shown(), (std::vector<std::string>{"02:00:00:00:01:01  ok      finished",
                                               "02:00:00:00:01:02  Installing  sending"}));
  progress.routerDone(mac(2), false, "broken");
  progress.tick(kSecond);
  EXPECT_EQ(shown(), (std::vector<std::string>{"02:00:00:00:01:01  ok      finished",
                                               "02:00:00:00:01:02  failed  broken"}));
}

TEST_F(LiveProgressTest, AnnouncementStaysAboveTheLiveLines) {
  progress.routerSeen(mac(1), "lab\x1b");
  progress.statusChanged(state(1, 0));
  progress.tick(0);
  EXPECT_EQ(shown(), (std::vector<std::string>{"02:00:00:00:01:01  announced itself: lab?",
                                               "02:00:00:00:01:01  Installing  sending"}));
}

TEST_F(LiveProgressTest, NoteStaysAboveTheLiveLines) {
  progress.statusChanged(state(1, 0));
  progress.tick(0);
  progress.note("kernel sent");
  EXPECT_EQ(shown(), (std::vector<std::string>{"kernel sent"}));
  progress.note("RAM disk sent");
  progress.tick(kMillisecond);
  EXPECT_EQ(shown(), (std::vector<std::string>{"kernel sent", "RAM disk sent",
                                               "02:00:00:00:01:01  Installing  sending"}));
}

TEST_F(LiveProgressTest, ResultsAreLeftToOthersOnRequest) {
  LiveProgress quiet(
      err, [this] { return size; }, false);
  quiet.statusChanged(state(1, 0));
  quiet.tick(0);
  quiet.routerDone(mac(1), true, "finished");
  EXPECT_TRUE(shown().empty());
}

TEST_F(LiveProgressTest, LinesAreCutBeforeTheLastColumn) {
  size = TerminalSize{30, 10};
  progress.statusChanged(state(1, 0, std::string(200, 'x')));
  progress.tick(0);
  EXPECT_EQ(shown()[0].size(), 29u);
}

TEST_F(LiveProgressTest, MoreRoutersThanLinesAreCounted) {
  for (std::uint8_t number = 1; number <= 20; ++number) progress.statusChanged(state(number, 0));
  progress.tick(0);
  const auto lines = shown();
  ASSERT_EQ(lines.size(), 9u);
  EXPECT_EQ(lines.back(), "and 12 more");
  progress.tick(kSecond);
  EXPECT_EQ(shown().size(), 9u);
}

TEST_F(LiveProgressTest, TerminalThatWentAwayIsNotWrittenTo) {
  size.reset();
  progress.statusChanged(state(1, 0));
  progress.tick(0);
  EXPECT_EQ(err.str(), "");
}

}  // namespace omniset::test
