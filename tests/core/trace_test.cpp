#include "core/trace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "tests/fakes/captured_trace.h"

namespace omniset::test {
namespace {

TEST(Trace, GoesToStandardOutputAtProgramStart) {
  ::testing::internal::CaptureStdout();
  traceLine("run out");
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "run out\n");
}

TEST(Trace, LineIsTheTextAndALineEnd) {
  const CapturedTrace captured;
  traceLine("exit");
  traceLine("");
  EXPECT_EQ(captured.text(), "exit\n\n");
}

TEST(Trace, FormattedTextGetsNoLineEndOfItsOwn) {
  const CapturedTrace captured;
  tracef("sending: %d", 7);
  tracef(" of %s\n", "9");
  EXPECT_EQ(captured.text(), "sending: 7 of 9\n");
}

TEST(Trace, PlainTextIsNotTakenForAFormat) {
  const CapturedTrace captured;
  trace("100%s %n");
  traceLine("%d");
  EXPECT_EQ(captured.text(), "100%s %n%d\n");
}

TEST(Trace, KeepsZeroBytesOfPlainText) {
  const CapturedTrace captured;
  trace(std::string_view("a\0b", 3));
  EXPECT_EQ(captured.text(), std::string_view("a\0b", 3));
}

TEST(Trace, GoesToTheSinkSetLast) {
  const CapturedTrace outer;
  {
    const CapturedTrace inner;
    traceLine("inside");
    EXPECT_EQ(inner.text(), "inside\n");
  }
  traceLine("outside");
  EXPECT_EQ(outer.text(), "outside\n");
}

TEST(Trace, SetSinkReturnsTheOneBefore) {
  CapturedTrace captured;
  EXPECT_EQ(setTraceSink(nullptr), &captured);
  EXPECT_EQ(setTraceSink(&captured), nullptr);
}

TEST(Trace, WithoutASinkIsDropped) {
  const CapturedTrace captured;
  EXPECT_TRUE(traceEnabled());
  {
    const SilentTrace silent;
    EXPECT_FALSE(traceEnabled());
    trace("a");
    tracef("%d", 1);
    traceLine("b");
  }
  EXPECT_EQ(captured.text(), "");
}

TEST(Trace, LinesOfSeveralThreadsAreNotInterleaved) {
  constexpr int kThreads = 4;
  constexpr int kLines = 200;
  CapturedTrace captured;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t] {
      const std::string line(40, static_cast<char>('a' + t));
      for (int i = 0; i < kLines; ++i) traceLine(line);
    });
  }
  for (auto& thread : threads) thread.join();

  std::string_view left = captured.text();
  int lines = 0;
  for (; !left.empty(); left.remove_prefix(41), ++lines) {
    ASSERT_GE(left.size(), 41u);
    ASSERT_EQ(left[40], '\n');
    ASSERT_EQ(left.substr(0, 40), std::string(40, left[0]));
  }
  EXPECT_EQ(lines, kThreads * kLines);
}

}  // namespace
}  // namespace omniset::test
