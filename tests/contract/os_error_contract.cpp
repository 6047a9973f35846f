#include "core/os_error.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "core/error.h"

namespace omniset::test {
namespace {

constexpr long kUnknownCode = 0x2FFFFFF;

TEST(OsError, LastErrorIsTheOneThatWasSet) {
  for (const long code : {5L, 0L, 2L}) {
    setLastOsError(code);
    EXPECT_EQ(lastOsError(), code);
  }
}

TEST(OsError, EachThreadHasItsOwnLastError) {
  std::atomic<int> step = 0;
  long seen = 0;
  std::thread other([&] {
    setLastOsError(2);
    step = 1;
    while (step != 2) {
    }
    seen = lastOsError();
  });
  while (step != 1) {
  }
  setLastOsError(5);
  step = 2;
  other.join();
  EXPECT_EQ(seen, 2);
}

TEST(OsError, AskingForATextLeavesTheLastError) {
  for (const long code : {2L, kUnknownCode}) {
    setLastOsError(5);
    osErrorText(code);
    EXPECT_EQ(lastOsError(), 5) << code;
  }
}

TEST(OsError, TextOfAKnownCodeEndsInALineBreak) {
  for (const long code : {0L, 1L, 2L, 5L}) {
    const std::string text = osErrorText(code);
    EXPECT_GT(text.size(), 1u) << code;
    EXPECT_TRUE(text.ends_with('\n')) << code << ": " << text;
  }
}

TEST(OsError, NoTextIsLongerThanItsRoom) {
  for (long code = 0; code < 12'100; ++code) EXPECT_LE(osErrorText(code).size(), 99u) << code;
}

TEST(OsError, TextOfAnUnknownCodeIsEmpty) {
  EXPECT_EQ(osErrorText(kUnknownCode), "");
  EXPECT_EQ(osErrorText(-1), "");
}

TEST(OsError, NotOwnerIsACodeThatTheSystemKnows) {
  EXPECT_NE(osErrorNotOwner(), 0);
  EXPECT_NE(osErrorText(osErrorNotOwner()), "");
}

TEST(OsError, AFailedCallCanBeReportedByItsCode) {
  setLastOsError(osErrorNotOwner());
  const Error error("Mutex ReleaseMutex");
  EXPECT_EQ(error.what(), "Mutex ReleaseMutex: " + osErrorText(osErrorNotOwner()) +
                              "Error code: " + std::to_string(osErrorNotOwner()));
}

}  // namespace
}  // namespace omniset::test
