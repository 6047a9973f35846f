// The power is cut before every operation on the disk, and what was not synced is lost or kept at
// random.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disk_fixture.h"

namespace omniset::test {
namespace {

// As large as they need be for a write to be kept in part.
const Files kFirst{{"system.bdl", std::string(5000, 'a')}, {"autorun.scr", "first"}};
const Files kSecond{
    {"system.bdl", std::string(5000, 'b')}, {"routing.bdl", "c"}, {"autorun.scr", "second"}};
constexpr unsigned kSeeds = 100;

struct Case {
  const char* name;
  bool onInstalled;
  bool keep;
  bool withLateFile;
};

struct PowerCutTest : DiskFixture, ::testing::WithParamInterface<Case> {
  void SetUp() override {
    if (GetParam().onInstalled) {
      install(kFirst);
      disk.putFile(kPartitionAt, "config.db", "precious");
      store->abandon();
    }
    before = disk.medium;
    disks.faults.restart();
  }
  void installSecond() {
    install(kSecond, GetParam().keep);
    if (!GetParam().withLateFile) return;
    put("late.bdl", "late");
    store->finish();
  }
  bool isKept() const { return GetParam().onInstalled && GetParam().keep; }

  // False when the installation ended before.
  bool installUntil(int operation, unsigned seed) {
    disk.medium = before;
    disks.faults.restart();
    disks.faults.cutPowerAt = operation;
    store = makeStore();
    bool isCut = false;
    try {
      installSecond();
    } catch (const PowerCut&) {
      isCut = true;
    }
    store.reset();
    disks.cutPower(seed);
    return isCut;
  }

  bool hasFiles(const Files& wanted) const {
    const Files found = files();
    return std::all_of(wanted.begin(), wanted.end(), [&](const auto& file) {
      const auto at = found.find(file.first);
      return at != found.end() && at->second == file.second;
    });
  }

  // A mark is never there without the files that it names.
  void expectWhatIsMarked(const MarkedFiles& marked) {
    Files found = files();
    for (const MarkedFile& file : marked) {
      Crc32 crc;
      crc.add(asBytes(found[file.name]));
      EXPECT_EQ(found[file.name].size(), file.size) << file.name;
      EXPECT_EQ(crc.value(), file.crc) << file.name;
    }
  }

  // An installation that counts is the old one or the new one, whole.
  void expectWholeOrNone() {
    if (isKept()) {
      EXPECT_TRUE(hasFiles({{"config.db", "precious"}}));
    }
    const auto marked = parseMark(disk.files(kPartitionAt)[kMarkName]);
    EXPECT_EQ(inspect() == Installation::kComplete, marked.has_value());
    if (!marked) return;
    expectWhatIsMarked(*marked);
    const bool isOld = GetParam().onInstalled && marked->size() == kFirst.size();
    EXPECT_TRUE(hasFiles(isOld ? kFirst : kSecond));
    EXPECT_GE(marked->size(), isOld ? kFirst.size() : kSecond.size());
  }

  FakeMedium before;
};

TEST_P(PowerCutTest, NeverLeavesAHalfInstallationThatCounts) {
  int operation = 0;
  std::map<Installation, int> seen;
  for (bool isCut = true; isCut; ++operation) {
    ASSERT_LT(operation, 200);
    for (unsigned seed = 0; seed < kSeeds && isCut; ++seed) {
      SCOPED_TRACE("operation " + std::to_string(operation) + ", seed " + std::to_string(seed));
      isCut = installUntil(operation, seed);
      expectWholeOrNone();
      ++seen[inspect()];
      if (HasFailure()) return;
    }
  }
  EXPECT_GE(operation, 30);
  // Both kinds of outcome were tried.
  EXPECT_GT(seen[Installation::kBrokenOff], 0);
  EXPECT_GT(seen[Installation::kComplete], 0);
  // The one that was not cut is complete, although the power was cut right after it.
  EXPECT_EQ(inspect(), Installation::kComplete);
  EXPECT_TRUE(hasFiles(kSecond));
}

TEST_P(PowerCutTest, TheDiskIsInstalledAnew) {
  for (int operation = 0;; ++operation) {
    const bool isCut = installUntil(operation, static_cast<unsigned>(operation));
    store = makeStore();
    installSecond();
    EXPECT_EQ(inspect(), Installation::kComplete) << operation;
    EXPECT_TRUE(hasFiles(kSecond)) << operation;
    EXPECT_EQ(hasFiles({{"config.db", "precious"}}), isKept()) << operation;
    if (!isCut) return;
  }
}

INSTANTIATE_TEST_SUITE_P(, PowerCutTest,
                         ::testing::Values(Case{"EmptyDisk", false, false, false},
                                           Case{"InstalledDisk", true, false, false},
                                           Case{"KeptInstallation", true, true, false},
                                           Case{"LateFile", false, false, true},
                                           Case{"LateFileOnKept", true, true, true}),
                         [](const ::testing::TestParamInfo<Case>& tested) {
                           return std::string(tested.param.name);
                         });

}  // namespace
}  // namespace omniset::test
