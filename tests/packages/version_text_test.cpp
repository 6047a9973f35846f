#include "packages/version_text.h"

#include <gtest/gtest.h>

namespace omniset::test {

TEST(VersionText, FinalReleaseShowsItsBuildBehindADot) {
  EXPECT_STREQ(versionText(0x02086607), "2.8.7");
}

TEST(VersionText, FinalReleaseWithoutBuildShowsMajorAndMinor) {
  EXPECT_STREQ(versionText(0x02096600), "2.9");
}

TEST(VersionText, OtherKindsShowTheirWordBetweenMinorAndBuild) {
  EXPECT_STREQ(versionText(0x02096103), "2.9alpha3");
  EXPECT_STREQ(versionText(0x02096203), "2.9beta3");
  EXPECT_STREQ(versionText(0x02096303), "2.9rc3");
}

TEST(VersionText, OtherKindsWithoutBuildEndInTheirWord) {
  EXPECT_STREQ(versionText(0x02096100), "2.9alpha");
  EXPECT_STREQ(versionText(0x02096200), "2.9beta");
  EXPECT_STREQ(versionText(0x02096300), "2.9rc");
}

TEST(VersionText, UnknownKindHasAnEmptyWord) {
  EXPECT_STREQ(versionText(0x02090000), "2.9");
  EXPECT_STREQ(versionText(0x01000000), "1.0");
  EXPECT_STREQ(versionText(0x02097A03), "2.93");
  EXPECT_STREQ(versionText(0x02094603), "2.93");  // 'F' is not 'f'
}

TEST(VersionText, LowestAndHighestWordStandForAnyVersion) {
  EXPECT_STREQ(versionText(0), "any");
  EXPECT_STREQ(versionText(0xFFFFFFFF), "any");
}

TEST(VersionText, NumbersUseTheirWholeByte) {
  EXPECT_STREQ(versionText(0xFFFF66FF), "255.255.255");
  EXPECT_STREQ(versionText(0xFFFFFFFE), "255.255254");
}

TEST(VersionText, NextCallReplacesTheText) {
  const char* first = versionText(0x02096203);
  const char* second = versionText(0x01006600);
  EXPECT_EQ(first, second);
  EXPECT_STREQ(first, "1.0");
}

}  // namespace omniset::test
