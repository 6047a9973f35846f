#include "link/deadline_index.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Index = DeadlineIndex<std::string>;

std::vector<std::string> dueAt(const Index& index, Micros now) {
  std::vector<std::string> due{"left over"};
  index.collectDue(now, due);
  return due;
}

TEST(DeadlineIndex, EmptyIndexHasNoNearestDeadline) {
  const Index index;
  EXPECT_EQ(index.nearest(), std::nullopt);
  EXPECT_THAT(dueAt(index, 1000), IsEmpty());
}

TEST(DeadlineIndex, NearestIsTheSmallest) {
  Index index;
  index.add(30, "c");
  index.add(10, "a");
  index.add(20, "b");
  EXPECT_EQ(index.nearest(), 10);
}

TEST(DeadlineIndex, DeadlineNotLaterThanNowIsDue) {
  Index index;
  index.add(10, "a");
  index.add(20, "b");
  index.add(21, "c");
  EXPECT_THAT(dueAt(index, 9), IsEmpty());
  EXPECT_THAT(dueAt(index, 20), ElementsAre("a", "b"));
}

TEST(DeadlineIndex, CollectingRemovesNothing) {
  Index index;
  index.add(10, "a");
  EXPECT_THAT(dueAt(index, 10), ElementsAre("a"));
  EXPECT_THAT(dueAt(index, 10), ElementsAre("a"));
}

TEST(DeadlineIndex, MovedDeadlineReplacesTheOldOne) {
  Index index;
  const auto a = index.add(10, "a");
  index.add(20, "b");
  const auto moved = index.move(a, 30);
  EXPECT_EQ(moved->first, 30);
  EXPECT_EQ(index.nearest(), 20);
  EXPECT_THAT(dueAt(index, 30), ElementsAre("b", "a"));
  index.move(moved, 5);
  EXPECT_EQ(index.nearest(), 5);
}

TEST(DeadlineIndex, RemovedOwnerIsNeverDue) {
  Index index;
  const auto a = index.add(10, "a");
  index.add(20, "b");
  index.remove(a);
  EXPECT_EQ(index.nearest(), 20);
  EXPECT_THAT(dueAt(index, 100), ElementsAre("b"));
}

TEST(DeadlineIndex, EqualDeadlinesAreAllDue) {
  Index index;
  const auto a = index.add(10, "a");
  index.add(10, "b");
  EXPECT_THAT(dueAt(index, 10), ElementsAre("a", "b"));
  index.remove(a);
  EXPECT_THAT(dueAt(index, 10), ElementsAre("b"));
}

}  // namespace
}  // namespace omniset::test
