// What the PC's console shows.
#include "target/terminal_lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/fake_clock.h"

namespace omniset::test {
namespace {

struct TerminalLinesTest : ::testing::Test {
  void progress(std::int32_t stored, std::int32_t size) {
    lines.progress({}, "a.bdl", stored, size);
  }

  FakeClock clock;
  std::string shown;
  TerminalLines lines{[this](const std::string& text) { shown += text; }, clock};
};

TEST_F(TerminalLinesTest, ASentenceIsALine) {
  lines.say("Hello.");
  EXPECT_EQ(shown, "Hello.\n");
}

TEST_F(TerminalLinesTest, ProgressIsWrittenOverAndASentenceTakesItsPlace) {
  progress(10, 100);
  clock.advance(kSecond);
  progress(60, 100);
  lines.say("Done.");
  EXPECT_EQ(shown,
            "\r\x1b[K   10 %  a.bdl"
            "\r\x1b[K   60 %  a.bdl"
            "\r\x1b[KDone.\n");
}

TEST_F(TerminalLinesTest, ProgressShowsTwiceASecondAtMost) {
  progress(1, 100);
  shown.clear();
  clock.advance(500 * kMillisecond - 1);
  progress(2, 100);
  EXPECT_EQ(shown, "");
  clock.advance(1);
  progress(3, 100);
  EXPECT_NE(shown, "");
}

// A terminal that takes its time must not take all of it.
TEST_F(TerminalLinesTest, ProgressRestsAfterASlowTerminalToo) {
  TerminalLines slow(
      [this](const std::string& text) {
        shown += text;
        clock.advance(kSecond);
      },
      clock);
  slow.progress({}, "a.bdl", 1, 100);
  shown.clear();
  slow.progress({}, "a.bdl", 2, 100);
  EXPECT_EQ(shown, "");
}

TEST_F(TerminalLinesTest, LargeFilesHaveTheirPercentage) {
  progress(2'000'000'000, 2'147'483'647);
  EXPECT_EQ(shown, "\r\x1b[K   93 %  a.bdl");
}

TEST_F(TerminalLinesTest, AnEmptyFileHasNoProgress) {
  progress(0, 0);
  EXPECT_EQ(shown, "");
}

TEST_F(TerminalLinesTest, NothingFromTheNetworkMovesTheCursor) {
  lines.say("Receiving \x1b[2J\n.");
  EXPECT_EQ(shown, "Receiving ?[2J .\n");
}

}  // namespace
}  // namespace omniset::test
