#include "target/disk/fat16_plan.h"

namespace omniset {

namespace {

// Outside of these counts a volume is FAT12 or FAT32, whatever its boot sector says.
constexpr std::uint32_t kFewestClusters = 4085;
constexpr std::uint32_t kMostClusters = 65524;

constexpr std::uint32_t kUsualClusterSectors = 4;
constexpr std::uint32_t kLargestClusterSectors = 64;
constexpr std::uint32_t kEntriesPerSector = 256;
constexpr std::uint32_t kUnusedEntries = 2;
constexpr std::uint32_t kBeforeTables = kFat16ReservedSectors + kFat16RootSectors;

Fat16Plan planWith(std::uint32_t sectors, std::uint32_t clusterSectors) {
  Fat16Plan plan{sectors, clusterSectors, 0, 0};
  const std::uint32_t shared = sectors - kBeforeTables;
  // Each sector of every table serves the clusters of so many sectors.
  const std::uint32_t served = kEntriesPerSector * clusterSectors + kFat16Tables;
  plan.tableSectors = (shared + kUnusedEntries * clusterSectors + served - 1) / served;
  plan.clusters = (shared - kFat16Tables * plan.tableSectors) / clusterSectors;
  return plan;
}

// The largest volume with such clusters.
Fat16Plan largestPlan(std::uint32_t clusterSectors) {
  constexpr std::uint32_t kTable =
      (kMostClusters + kUnusedEntries + kEntriesPerSector - 1) / kEntriesPerSector;
  return {kBeforeTables + kFat16Tables * kTable + kMostClusters * clusterSectors, clusterSectors,
          kTable, kMostClusters};
}

}  // namespace

Fat16Plan planFat16(std::uint32_t sectors) {
  std::uint32_t clusterSectors = kUsualClusterSectors;
  Fat16Plan plan = planWith(sectors, clusterSectors);
  while (plan.clusters < kFewestClusters && clusterSectors > 1) {
    plan = planWith(sectors, clusterSectors /= 2);
  }
  while (plan.clusters > kMostClusters && clusterSectors < kLargestClusterSectors) {
    plan = planWith(sectors, clusterSectors *= 2);
  }
  return plan.clusters > kMostClusters ? largestPlan(clusterSectors) : plan;
}

}  // namespace omniset
