#include "target/disk/fat16_plan.h"

#include <gtest/gtest.h>

#include "target/disk/partition_table.h"

namespace omniset::test {
namespace {

constexpr std::uint32_t kTwoGigabytes = 2 * 1024 * 2048;
constexpr std::uint32_t kSmallest = kSmallestDisk - 63;

// What the format demands of any volume, and that no more than a cluster is lost at its end.
bool isSound(std::uint32_t sectors) {
  const Fat16Plan plan = planFat16(sectors);
  const std::uint64_t before =
      kFat16ReservedSectors + kFat16RootSectors + std::uint64_t{kFat16Tables} * plan.tableSectors;
  const std::uint64_t end = before + std::uint64_t{plan.clusters} * plan.clusterSectors;
  const bool isFull = plan.sectors == sectors && plan.sectors - end < plan.clusterSectors;
  const bool isLargest = plan.clusters == 65524 && plan.clusterSectors == 64 && end == plan.sectors;
  return plan.clusters >= 4085 && plan.clusters <= 65524 && plan.clusterSectors <= 64 &&
         (plan.clusterSectors & (plan.clusterSectors - 1)) == 0 && plan.tableSectors <= 256 &&
         plan.tableSectors * 256 >= plan.clusters + 2 && end <= plan.sectors &&
         plan.sectors <= sectors && (isFull || isLargest);
}

TEST(Fat16Plan, IsSoundForEverySizeUpToTwoGigabytes) {
  for (std::uint32_t sectors = kSmallest; sectors <= kTwoGigabytes; ++sectors) {
    ASSERT_TRUE(isSound(sectors)) << sectors;
  }
}

TEST(Fat16Plan, TakesUsualClusters) {
  EXPECT_EQ(planFat16(kSmallest).clusterSectors, 1u);
  EXPECT_EQ(planFat16(63 * 2048).clusterSectors, 4u);
  EXPECT_EQ(planFat16(127 * 2048).clusterSectors, 4u);
  EXPECT_EQ(planFat16(255 * 2048).clusterSectors, 8u);
  EXPECT_EQ(planFat16(511 * 2048).clusterSectors, 16u);
  EXPECT_EQ(planFat16(1023 * 2048).clusterSectors, 32u);
  EXPECT_EQ(planFat16(2047 * 2048).clusterSectors, 64u);
}

TEST(Fat16Plan, TheLargestVolumeLeavesAFewSectorsUnused) {
  const Fat16Plan plan = planFat16(kTwoGigabytes);
  EXPECT_EQ(plan.clusters, 65524u);
  EXPECT_LT(kTwoGigabytes - plan.sectors, 4 * 64u);
}

}  // namespace
}  // namespace omniset::test
