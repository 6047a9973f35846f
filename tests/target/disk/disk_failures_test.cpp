// Every operation on the disk fails in turn.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disk_fixture.h"

namespace omniset::test {
namespace {

using ::testing::HasSubstr;

const Files kFirst{{"system.bdl", std::string(5000, 'a')}, {"autorun.scr", "first"}};
const Files kSecond{
    {"system.bdl", std::string(4000, 'b')}, {"routing.bdl", "c"}, {"autorun.scr", ""}};

struct Case {
  const char* name;
  bool onInstalled;
  bool keep;
  bool forGood;
};

struct DiskFailures : DiskFixture, ::testing::WithParamInterface<Case> {
  void SetUp() override {
    disks.add("sdb", 64 * kMegabyte);
    store = makeStore(true);
  }
  // The disk as it is before.
  void begin() {
    disk.medium = {};
    disks.faults.restart();
    if (GetParam().onInstalled) {
      install(kFirst);
      disk.putFile(kPartitionAt, "config.db", "precious");
    }
    store->abandon();
    disks.faults.restart();
  }
  // As the session does it.
  std::string installSecond() {
    const std::string failure = failureOf([&] { install(kSecond, GetParam().keep); });
    if (failure != "none") store->abandon();
    return failure;
  }
  bool isKept() const { return GetParam().onInstalled && GetParam().keep; }
  void expectInstalled(int at) {
    disks.faults.restart();
    EXPECT_EQ(inspect(), Installation::kComplete) << at;
    EXPECT_EQ(files().at("system.bdl"), kSecond.at("system.bdl")) << at;
    EXPECT_EQ(files().count("config.db"), isKept() ? 1u : 0u) << at;
    EXPECT_EQ(files().at("autorun.scr"), isKept() ? "first" : "") << at;
  }
};

TEST_P(DiskFailures, EachEndsInASentenceAndARetrySucceeds) {
  begin();
  ASSERT_EQ(installSecond(), "none");
  const int operations = disks.faults.operations;
  const std::vector<std::string> log = disks.faults.log;
  EXPECT_GE(operations, 30);
  std::vector<std::string> passedOver;
  for (int i = 0; i < operations; ++i) {
    begin();
    disks.faults.failAt = i;
    disks.faults.failsForGood = GetParam().forGood;
    const std::string failure = installSecond();
    EXPECT_EQ(disk.mounted, 0) << i;
    EXPECT_EQ(disk.openFiles, 0) << i;
    disks.faults.restart();
    if (failure == "none") {
      passedOver.push_back(log[static_cast<std::size_t>(i)]);
      expectInstalled(i);
    } else {
      EXPECT_THAT(failure, HasSubstr("Cannot do: ")) << i;
      // What was to be kept is there whatever failed.
      if (isKept()) {
        EXPECT_EQ(files().at("config.db"), "precious") << i;
      }
    }
    EXPECT_EQ(installSecond(), "none") << i;
    expectInstalled(i);
  }
  // Of a disk that is erased one thing is dispensable, to know what is on it: mount, list, and two
  // steps for the mark, and the two sectors of another partition table.
  const std::size_t looks = isKept() ? 0 : GetParam().onInstalled ? 6 : 2;
  EXPECT_LE(passedOver.size(), looks) << ::testing::PrintToString(passedOver);
}

INSTANTIATE_TEST_SUITE_P(, DiskFailures,
                         ::testing::Values(Case{"EmptyDisk", false, false, false},
                                           Case{"EmptyDiskThatDies", false, false, true},
                                           Case{"InstalledDisk", true, false, false},
                                           Case{"InstalledDiskThatDies", true, false, true},
                                           Case{"KeptInstallation", true, true, false},
                                           Case{"KeptInstallationThatDies", true, true, true},
                                           Case{"NothingToKeep", false, true, false}),
                         [](const ::testing::TestParamInfo<Case>& tested) {
                           return std::string(tested.param.name);
                         });

}  // namespace
}  // namespace omniset::test
