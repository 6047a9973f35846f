#include "target/disk/disk_capacity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disk_fixture.h"
#include "target/disk/fat16_plan.h"

namespace omniset::test {
namespace {

using ::testing::HasSubstr;

std::string check(std::uint64_t sectors, const MarkedFiles& files) {
  return failureOf([&] { requireCapacity("sda", sectors, files); });
}

TEST(DiskCapacity, EveryClusterButThoseOfTheTwoMarksCanBeFilled) {
  const Fat16Plan plan = planFat16(planPartition("sda", 64 * kMegabyte).count);
  const auto most =
      static_cast<std::uint32_t>((plan.clusters - 2) * plan.clusterSectors * kSectorSize);
  EXPECT_EQ(check(64 * kMegabyte, {{"a.bdl", most, 0}}), "none");
  EXPECT_EQ(check(64 * kMegabyte, {{"a.bdl", most + 1, 0}}),
            "The disk sda is too small for the packages: its volume holds 62 MB, and 63 MB are "
            "needed.");
}

TEST(DiskCapacity, APartOfAClusterTakesAllOfIt) {
  const Fat16Plan plan = planFat16(planPartition("sda", 64 * kMegabyte).count);
  const auto cluster = static_cast<std::uint32_t>(plan.clusterSectors * kSectorSize);
  const std::uint32_t most = (plan.clusters - 3) * cluster;
  EXPECT_EQ(check(64 * kMegabyte, {{"a.bdl", most, 0}, {"b.bdl", 1, 0}}), "none");
  EXPECT_NE(check(64 * kMegabyte, {{"a.bdl", most + 1, 0}, {"b.bdl", 1, 0}}), "none");
  EXPECT_EQ(check(64 * kMegabyte, {{"a.bdl", most + cluster, 0}, {"b.bdl", 0, 0}}), "none");
}

// 512 entries: the label and two for each of two names of ours, and two for each short name.
TEST(DiskCapacity, TheRootFolderHasRoomForSoManyNames) {
  MarkedFiles files(253, {"package.bdl", 1, 0});
  EXPECT_EQ(check(64 * kMegabyte, files), "none");
  files.push_back({"package.bdl", 1, 0});
  EXPECT_EQ(check(64 * kMegabyte, files),
            "The root folder of the disk sda has no room for the names of 254 files.");
  EXPECT_NE(check(64 * kMegabyte, MarkedFiles(200, {"routing-2.9.7.bdl", 1, 0})), "none");
}

TEST(DiskCapacity, ADiskTooSmallForAnythingIsSaidToBeSo) {
  EXPECT_THAT(check(kSmallestDisk - 1, {}), HasSubstr("The disk sda is too small: it has 3 MB"));
}

}  // namespace
}  // namespace omniset::test
