#include "cli/media_progress.h"

#include <gtest/gtest.h>

#include <sstream>

#include "cli/json_lines.h"

namespace omniset::test {

namespace {

MediaState copying(std::int64_t done) {
  return {.text = "Copying file: a.bdl", .done = done, .total = 200};
}

const MediaState kFloppyStep{
    .text = "Setting label...", .done = 8, .total = 10, .unit = MediaState::Unit::kSteps};

LiveMedia::SizeSource columns(std::size_t count) {
  return [count] { return TerminalSize{count, 24}; };
}

}  // namespace

TEST(MediaLine, HasTextBarPercentAndTime) {
  EXPECT_EQ(mediaLine("E:\\", copying(90), 12 * kSecond, 79),
            "E:\\  Copying file: a.bdl                   [#########------------]   45 %  0:12");
}

TEST(MediaLine, IsCutToTheTerminal) {
  EXPECT_EQ(mediaLine("E:\\", copying(90), 0, 56),
            "E:\\  Copying file: a.bdl                    45 %  0:00");
  EXPECT_EQ(mediaLine("E:\\", copying(90), 0, 10), "E:\\  Copyi");
}

TEST(PlainMedia, LeavesALineForEachTextAndTheEnd) {
  std::ostringstream err;
  PlainMedia display(err, "/dev/s\x1b");
  display.changed(copying(0));
  display.changed(copying(100));
  display.changed({.text = "Checking\n"});
  display.ended({.isDone = true, .text = "Installation completed"});
  display.ended({.text = "Cannot open device"});
  EXPECT_EQ(err.str(),
            "/dev/s?  Copying file: a.bdl\n"
            "/dev/s?  Checking\n"
            "/dev/s?  done: Installation completed\n"
            "/dev/s?  failed: Cannot open device\n");
}

TEST(LiveMedia, RedrawsOneLineAndClearsIt) {
  std::ostringstream err;
  LiveMedia display(err, "E:\\", columns(40));
  display.tick(5 * kSecond);
  EXPECT_EQ(err.str(), "");
  display.changed(copying(0));
  display.tick(6 * kSecond);
  display.tick(6 * kSecond + kMillisecond);  // too early for another picture
  EXPECT_EQ(err.str(), "\rE:\\  Copying file: a.bdl               \x1b[K");
  err.str("");
  display.ended({.isDone = true, .text = "Installation completed"});
  EXPECT_EQ(err.str(), "\r\x1b[K");
}

TEST(LiveMedia, CountsTheTimeFromItsStart) {
  std::ostringstream err;
  LiveMedia display(err, "E:\\", columns(80));
  display.tick(100 * kSecond);
  display.changed(copying(0));
  display.tick(165 * kSecond);
  EXPECT_NE(err.str().find("0 %  1:05"), std::string::npos) << err.str();
}

TEST(LiveMedia, WithoutATerminalDrawsNothing) {
  std::ostringstream err;
  LiveMedia display(err, "E:\\", [] { return std::nullopt; });
  display.changed(copying(0));
  display.tick(5 * kSecond);
  EXPECT_EQ(err.str(), "");
}

TEST(MediaResultLine, SaysWhetherAndWhy) {
  std::ostringstream out;
  MediaResultLine data(out, "E:\\");
  data.changed(copying(0));
  data.ended({.isDone = true, .text = "Completed"});
  data.ended({.text = "Cannot open\ndevice"});
  EXPECT_EQ(out.str(), "E:\\  ok      Completed\nE:\\  failed  Cannot open device\n");
}

TEST(JsonMediaEvents, StatusOfADiskHasBytes) {
  std::ostringstream out;
  JsonMediaEvents(out, "E:\\").changed(copying(100));
  EXPECT_EQ(out.str(),
            "{\"event\":\"status\",\"device\":\"E:\\\\\",\"text\":\"Copying file: a.bdl\","
            "\"bytes\":100,\"total\":200}\n");
}

TEST(JsonMediaEvents, StatusOfAFloppyHasSteps) {
  std::ostringstream out;
  JsonMediaEvents(out, "A:\\").changed(kFloppyStep);
  EXPECT_EQ(out.str(),
            "{\"event\":\"status\",\"device\":\"A:\\\\\",\"text\":\"Setting label...\","
            "\"step\":8,\"steps\":10}\n");
}

TEST(JsonMediaEvents, ResultSaysWhetherAndWhy) {
  std::ostringstream out;
  JsonMediaEvents(out, "d").ended({.text = "Cannot open device"});
  EXPECT_EQ(out.str(),
            "{\"event\":\"result\",\"device\":\"d\",\"ok\":false,"
            "\"text\":\"Cannot open device\"}\n");
}

}  // namespace omniset::test
