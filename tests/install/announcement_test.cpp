#include "install/announcement.h"

#include <gtest/gtest.h>

namespace omniset::test {
namespace {

std::string labelOf(std::string_view payload) {
  const auto announcement = parseAnnouncement(payload);
  return announcement ? announcement->label : "(no announcement)";
}

TEST(Announcement, LabelIsTheFourthLine) {
  EXPECT_EQ(labelOf("DSCV\n2.9\nx86\nbranch office\n"), "branch office");
}

TEST(Announcement, OtherPayloadsAreNone) {
  EXPECT_FALSE(parseAnnouncement("").has_value());
  EXPECT_FALSE(parseAnnouncement("DSC").has_value());
  EXPECT_FALSE(parseAnnouncement("dscv\na\nb\nc\n").has_value());
  EXPECT_FALSE(parseAnnouncement("xDSCV\na\nb\nc\n").has_value());
}

TEST(Announcement, OnlyTheBeginningOfTheFirstLineIsCompared) {
  EXPECT_EQ(labelOf("DSCV2\na\nb\nc\n"), "c");
}

TEST(Announcement, EmptyLinesCount) {
  EXPECT_EQ(labelOf("DSCV\n\n\nlabel\n"), "label");
  EXPECT_EQ(labelOf("DSCV\na\nb\n\n"), "");
}

TEST(Announcement, WhatFollowsTheLabelIsIgnored) {
  EXPECT_EQ(labelOf("DSCV\na\nb\nlabel\nmore\n"), "label");
}

TEST(Announcement, LabelWithoutItsLineEndIsWhatIsThere) {
  EXPECT_EQ(labelOf("DSCV\na\nb\nlab"), "lab");
}

TEST(Announcement, TooFewLinesGiveAnEmptyLabel) {
  EXPECT_EQ(labelOf("DSCV"), "");
  EXPECT_EQ(labelOf("DSCV\na\nb"), "");
  EXPECT_EQ(labelOf("DSCV\na\nb\n"), "");
}

TEST(Announcement, OnlyThe1024FirstBytesAreLookedAt) {
  const std::string head = "DSCV\na\nb\n";
  const std::string fits(1024 - head.size(), 'x');
  EXPECT_EQ(labelOf(head + fits + "yyy\n"), fits);
  EXPECT_EQ(labelOf("DSCV\n" + std::string(1100, 'a') + "\nb\nlabel\n"), "");
}

TEST(Announcement, ZeroByteEndsTheText) {
  EXPECT_EQ(labelOf(std::string_view("DSCV\na\nb\nla\0bel\n", 16)), "la");
  EXPECT_EQ(labelOf(std::string_view("DSCV\na\0\nb\nlabel\n", 16)), "");
}

TEST(Announcement, OtherBytesOfTheLabelAreKept) {
  EXPECT_EQ(labelOf("DSCV\na\nb\n\x80\xFF\t\r\n"), "\x80\xFF\t\r");
}

}  // namespace
}  // namespace omniset::test
