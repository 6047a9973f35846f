#include "core/format_text.h"

#include <gtest/gtest.h>

namespace omniset::test {
namespace {

TEST(FormatText, FormatsLikePrintf) {
  EXPECT_EQ(formatText("%s %d %02X %5.1f%%", "a", -1, 10, 2.25), "a -1 0A   2.2%");
}

TEST(FormatText, OfNothingIsEmpty) {
  EXPECT_EQ(formatText("%s", ""), "");
}

TEST(FormatText, HasNoLimitOfLength) {
  const std::string longText(100'000, 'x');
  EXPECT_EQ(formatText("<%s>", longText.c_str()), "<" + longText + ">");
}

// The same on every system, whatever its C runtime does by default.
TEST(FormatText, KnowsTheStandardsLengths) {
  EXPECT_EQ(formatText("%lld %zu %llu", -1LL, std::size_t{7}, ~0ULL), "-1 7 18446744073709551615");
}

}  // namespace
}  // namespace omniset::test
