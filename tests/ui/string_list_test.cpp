#include "ui/string_list.h"

#include <gmock/gmock.h>

#include "tests/fakes/bytes_of.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(PackedStrings, EndWithAnExtraNul) {
  EXPECT_EQ(packedStrings({"a", "bc"}), bytesOf({"a\0bc\0\0", 6}));
}

TEST(PackedStrings, LeaveOutEmptyOnes) {
  EXPECT_EQ(packedStrings({"", "a", "", "b", ""}), bytesOf({"a\0b\0\0", 5}));
}

TEST(PackedStrings, EndAtTheirFirstNul) {
  EXPECT_EQ(packedStrings({std::string("a\0b", 3), std::string("\0c", 2)}), bytesOf({"a\0\0", 3}));
}

TEST(SplitStrings, EndAtTheFirstEmptyOne) {
  EXPECT_THAT(splitStrings(bytesOf({"a\0bc\0\0rest\0", 11})), ElementsAre("a", "bc"));
  EXPECT_THAT(splitStrings(bytesOf({"\0a\0\0", 4})), IsEmpty());
}

TEST(SplitStrings, MayLackTheExtraNul) {
  EXPECT_THAT(splitStrings(bytesOf({"a\0bc\0", 5})), ElementsAre("a", "bc"));
}

TEST(SplitStrings, MayLackTheLastNul) {
  EXPECT_THAT(splitStrings(bytesOf({"a\0bc", 4})), ElementsAre("a", "bc"));
}

TEST(SplitStrings, OfNothingAreNone) {
  EXPECT_THAT(splitStrings({}), IsEmpty());
}

}  // namespace
}  // namespace omniset::test
