#include "core/clock.h"

#include <gtest/gtest.h>

namespace omniset::test {
namespace {

TEST(Clock, ASecondIsAMillionUnits) {
  EXPECT_EQ(kSecond, 1'000'000);
  EXPECT_EQ(kMillisecond * 1000, kSecond);
}

TEST(Clock, HoldsMoreThanAHundredThousandYears) {
  constexpr Micros kYear = kSecond * 60 * 60 * 24 * 365;
  EXPECT_GT(kYear * 100'000, 0);
}

}  // namespace
}  // namespace omniset::test
