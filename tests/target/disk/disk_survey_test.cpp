#include "target/disk/disk_survey.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disk_fixture.h"

namespace omniset::test {
namespace {

struct DiskSurveyTest : DiskFixture {
  std::string surveyed() {
    DiskSurvey survey(disks);
    while (!survey.step()) {
    }
    return survey.text();
  }
};

TEST_F(DiskSurveyTest, TellsAllDisks) {
  install({{"a.bdl", std::string(500'000, 'a')}});
  disks.add("sdb", 512 * kMegabyte);
  EXPECT_EQ(surveyed(), "sda 64 MB, installed; sdb 512 MB");
}

TEST_F(DiskSurveyTest, HoldsNoVolumeWhenItIsDone) {
  install({{"a.bdl", "1"}});
  disks.add("sdb", 512 * kMegabyte);
  DiskSurvey survey(disks);
  while (!survey.step()) {
  }
  EXPECT_EQ(disk.mounted, 0);
  EXPECT_TRUE(survey.step());
}

TEST_F(DiskSurveyTest, MayBeDroppedForAnInstallation) {
  install({{"a.bdl", std::string(500'000, 'a')}});
  {
    DiskSurvey survey(disks);
    survey.step();
    EXPECT_FALSE(survey.step());
    EXPECT_EQ(survey.text(), "sda 64 MB");
  }
  install({{"b.bdl", "2"}});
  EXPECT_EQ(surveyed(), "sda 64 MB, installed");
}

TEST(DiskSurveyWithoutDisks, SaysSo) {
  FakeDisks none;
  DiskSurvey survey(none);
  EXPECT_TRUE(survey.step());
  EXPECT_EQ(survey.text(), "no disk");
}

}  // namespace
}  // namespace omniset::test
