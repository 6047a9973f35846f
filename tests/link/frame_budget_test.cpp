#include "link/frame_budget.h"

#include <gtest/gtest.h>

#include <vector>

namespace omniset::test {
namespace {

TEST(FrameBudget, FileTakesAHeaderAndItsChunks) {
  EXPECT_EQ(framesForFile(0), 1);
  EXPECT_EQ(framesForFile(1), 2);
  EXPECT_EQ(framesForFile(1452), 2);
  EXPECT_EQ(framesForFile(1453), 3);
  EXPECT_EQ(framesForFile(2904), 3);
}

TEST(FrameBudget, InstallationAddsTheOfferAndTheRebootCommand) {
  EXPECT_EQ(framesForInstallation({}), 2);
  const std::vector<std::int64_t> sizes{2904, 0, 1};
  EXPECT_EQ(framesForInstallation(sizes), 2 + 3 + 1 + 2);
}

TEST(FrameBudget, LargestSingleFileThatFitsIsAbout95Megabytes) {
  const std::int64_t largest = (kFrameBudget - 3) * 1452;
  const std::vector<std::int64_t> fits{largest};
  const std::vector<std::int64_t> tooLarge{largest + 1};
  EXPECT_EQ(framesForInstallation(fits), kFrameBudget);
  EXPECT_GT(framesForInstallation(tooLarge), kFrameBudget);
  EXPECT_EQ(largest / 1'000'000, 95);
}

TEST(FrameBudget, SizesBeyond32BitsAreCountedExactly) {
  EXPECT_EQ(framesForFile(std::int64_t{1452} * 5'000'000'000), 5'000'000'001);
}

}  // namespace
}  // namespace omniset::test
