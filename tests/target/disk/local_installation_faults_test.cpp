// An installation of the disk that the PC was started from: every operation on the disks fails in
// turn, and the power is cut before each.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "own_disk_fixture.h"

namespace omniset::test {
namespace {

using ::testing::AnyOf;
using ::testing::HasSubstr;

constexpr unsigned kSeeds = 25;

// The parameter is where the volume begins that the PC was started from.
struct LocalInstallationFaults : OwnDiskFixture, ::testing::WithParamInterface<int> {
  LocalInstallationFaults() {
    makeVolume(other, 0, 1, kInstallerFiles);
    otherBefore.emplace(other);
  }
  void begin() {
    makeVolume(disk, static_cast<std::uint64_t>(GetParam()), kOwnNumber,
               together(kInstallerFiles, kPackages));
    before.emplace(disk);
    disks.faults.restart();
    console.said.clear();
  }
  bool isUntouched() const { return DiskPicture(disk) == *before; }
  // The mark's other name may still be there.
  bool isComplete() {
    Files files = disk.files(kPartitionAt);
    files.erase(kMarkName);
    files.erase(kPartName);
    return inspect() == Installation::kComplete && files == kPackages;
  }
  void expectNothingElseTouched() {
    EXPECT_TRUE(DiskPicture(other) == *otherBefore);
    EXPECT_EQ(disk.mounted + other.mounted, 0);
    EXPECT_EQ(disk.openFiles + other.openFiles, 0);
  }
  // What a PC that is started again from the disk would do.
  bool mayStart() {
    return failureOf([&] { findBootedVolume(disks, kOwnNumber); }) == "none";
  }

  FakeDisk& other = disks.add("sdb", 64 * kMegabyte);
  std::optional<DiskPicture> before;
  std::optional<DiskPicture> otherBefore;
};

TEST_P(LocalInstallationFaults, EachFailureIsToldAndBeforeTheErasingChangesNothing) {
  begin();
  ASSERT_EQ(run(), "none");
  const std::vector<std::string> log = disks.faults.log;
  const auto firstWrite = std::find(log.begin(), log.end(), "sda write sectors") - log.begin();
  ASSERT_GE(firstWrite, 15);
  ASSERT_GE(log.size(), 50u);
  std::vector<std::string> passedOver;
  for (int i = 0; i < static_cast<int>(log.size()) * 2; ++i) {
    begin();
    disks.faults.failAt = i / 2;
    disks.faults.failsForGood = i % 2 == 1;
    const std::string failure = run();
    disks.faults.restart();
    SCOPED_TRACE(log[static_cast<std::size_t>(i / 2)] + ": " + failure);
    expectNothingElseTouched();
    if (failure == "none") {
      EXPECT_TRUE(isComplete());
      passedOver.push_back(log[static_cast<std::size_t>(i / 2)]);
      continue;
    }
    EXPECT_THAT(failure, HasSubstr("Cannot do: "));
    EXPECT_THAT(failure, AnyOf(HasSubstr("Nothing was changed on any disk."),
                               HasSubstr("The installation on the disk sda broke off:")));
    // At its end it is only uncertain whether all of it is on the medium.
    EXPECT_EQ(inspect() == Installation::kComplete, isComplete());
    if (i / 2 < firstWrite || failure.find("Nothing was changed") != std::string::npos) {
      EXPECT_TRUE(isUntouched());
    }
    EXPECT_EQ(mayStart(), isUntouched());
  }
  // Dispensable: to look for what is erased anyway, and for another partition table.
  EXPECT_LE(passedOver.size(), 6u) << ::testing::PrintToString(passedOver);
}

TEST_P(LocalInstallationFaults, APowerCutLeavesTheOldDiskOrOneThatBrokeOffOrAllOfTheNew) {
  int untouched = 0;
  int brokenOff = 0;
  int complete = 0;
  bool isCut = true;
  int operation = 0;
  for (; isCut; ++operation) {
    ASSERT_LT(operation, 200);
    for (unsigned seed = 0; seed < kSeeds; ++seed) {
      SCOPED_TRACE("operation " + std::to_string(operation) + ", seed " + std::to_string(seed));
      begin();
      disks.faults.cutPowerAt = operation;
      isCut = false;
      try {
        EXPECT_EQ(run(), "none");
      } catch (const PowerCut&) {
        isCut = true;
      }
      disks.cutPower(seed);
      expectNothingElseTouched();
      if (isUntouched()) {
        ++untouched;
      } else if (isComplete()) {
        ++complete;
      } else {
        EXPECT_EQ(inspect(), Installation::kBrokenOff);
        ++brokenOff;
      }
      EXPECT_EQ(mayStart(), isUntouched());
      if (HasFailure()) return;
    }
  }
  EXPECT_GE(operation, 50);
  EXPECT_TRUE(isComplete());
  EXPECT_GT(untouched, 0);
  EXPECT_GT(brokenOff, 0);
  EXPECT_GT(complete, 0);
}

INSTANTIATE_TEST_SUITE_P(, LocalInstallationFaults, ::testing::Values(0, 63, 2048, 8192),
                         [](const ::testing::TestParamInfo<int>& tested) {
                           return "VolumeAt" + std::to_string(tested.param);
                         });

}  // namespace
}  // namespace omniset::test
