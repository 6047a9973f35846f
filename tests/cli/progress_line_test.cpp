#include "cli/progress_line.h"

#include <gtest/gtest.h>

namespace omniset::test {

namespace {

RouterState sending(std::int64_t bytes, std::int64_t total) {
  return {{{2, 0, 0, 0, 1, 10}}, "", RouterStatus::kInstalling, "Transfering: a.bdl", bytes, total};
}

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace

TEST(SizeText, UsesDecimalUnits) {
  EXPECT_EQ(sizeText(0), "0 B");
  EXPECT_EQ(sizeText(999), "999 B");
  EXPECT_EQ(sizeText(1'000), "1.0 kB");
  EXPECT_EQ(sizeText(12'345'678), "12.3 MB");
  EXPECT_EQ(sizeText(2'000'000'000), "2.0 GB");
}

TEST(AmountText, ShowsBothInTheUnitOfTheTotal) {
  EXPECT_EQ(amountText(500, 800), "500 of 800 B");
  EXPECT_EQ(amountText(100'000, 12'000'000), "0.1 of 12.0 MB");
}

TEST(DurationText, RoundsUpToSeconds) {
  EXPECT_EQ(durationText(0), "0:00");
  EXPECT_EQ(durationText(1), "0:01");
  EXPECT_EQ(durationText(61 * kSecond), "1:01");
  EXPECT_EQ(durationText(3'723 * kSecond), "1:02:03");
}

TEST(PercentOf, IsRoundedDownAndWithinBounds) {
  EXPECT_EQ(percentOf(0, 100), 0);
  EXPECT_EQ(percentOf(999, 1000), 99);
  EXPECT_EQ(percentOf(1000, 1000), 100);
  EXPECT_EQ(percentOf(2000, 1000), 100);
  EXPECT_EQ(percentOf(0, 0), 0);
}

TEST(RateMeter, TellsNothingBeforeHalfASecond) {
  RateMeter rate;
  EXPECT_EQ(rate.bytesPerSecond(), std::nullopt);
  rate.add(0, 1);
  rate.add(kSecond / 5, 1000);
  EXPECT_EQ(rate.bytesPerSecond(), std::nullopt);
}

TEST(RateMeter, TellsTheRateOfTheLastSeconds) {
  RateMeter rate;
  for (int second = 1; second <= 10; ++second) rate.add(second * kSecond, second * 100);
  EXPECT_DOUBLE_EQ(rate.bytesPerSecond().value(), 100);
  for (int second = 11; second <= 13; ++second) rate.add(second * kSecond, second * 1'000 - 9'000);
  EXPECT_DOUBLE_EQ(rate.bytesPerSecond().value(), 1'000);
}

TEST(RateMeter, ComesDownWhenNothingMoves) {
  RateMeter rate;
  rate.add(0, 1);
  rate.add(kSecond, 1'000);
  for (int second = 2; second <= 5; ++second) rate.add(second * kSecond, 1'000);
  EXPECT_DOUBLE_EQ(rate.bytesPerSecond().value(), 0);
}

TEST(RateMeter, DoesNotCountTheTimeBeforeTheFirstByte) {
  RateMeter rate;
  for (int second = 0; second <= 60; ++second) rate.add(second * kSecond, 0);
  rate.add(61 * kSecond, 1'000);
  EXPECT_DOUBLE_EQ(rate.bytesPerSecond().value(), 1'000);
}

TEST(RateMeter, FewerBytesStartItAnew) {
  RateMeter rate;
  rate.add(0, 5'000);
  rate.add(kSecond, 9'000);
  rate.add(2 * kSecond, 0);
  EXPECT_EQ(rate.bytesPerSecond(), std::nullopt);
}

TEST(ProgressLine, ShowsAmountRateAndTimeLeft) {
  const std::string line = progressLine(sending(3'000'000, 12'000'000), 3'000'000, 79);
  EXPECT_TRUE(line.starts_with("02:00:00:00:01:0A  Installing   25 %  ")) << line;
  EXPECT_TRUE(contains(line, "3.0 of 12.0 MB"));
  EXPECT_TRUE(contains(line, "3.0 MB/s"));
  EXPECT_TRUE(contains(line, "0:03 left"));
}

TEST(ProgressLine, HasABarWhereThereIsRoom) {
  const std::string wide = progressLine(sending(50, 100), 10, 120);
  EXPECT_TRUE(contains(wide, "[###################--------------------]")) << wide;
  EXPECT_FALSE(contains(progressLine(sending(50, 100), 10, 79), "["));
}

TEST(ProgressLine, NeverExceedsTheWidth) {
  for (std::size_t columns = 0; columns < 200; ++columns) {
    EXPECT_LE(progressLine(sending(999'999'999, 2'147'483'647), 1e9, columns).size(), columns);
    RouterState state = sending(0, 100);
    state.text = std::string(300, 'x');
    EXPECT_LE(progressLine(state, std::nullopt, columns).size(), columns);
  }
}

TEST(ProgressLine, ShowsTheStatusTextBeforeBytesMoveAndAfterwards) {
  RouterState state = sending(0, 100);
  state.text = "Partitioning and formating harddrive...";
  EXPECT_EQ(progressLine(state, std::nullopt, 79),
            "02:00:00:00:01:0A  Installing  Partitioning and formating harddrive...");
  state = sending(100, 100);
  state.status = RouterStatus::kWaitingReboot;
  state.text = "Sending reboot command...";
  EXPECT_EQ(progressLine(state, 5.0, 79),
            "02:00:00:00:01:0A  Waiting reboot  Sending reboot command...");
}

TEST(ProgressLine, StandstillShowsNoTimeLeft) {
  EXPECT_FALSE(contains(progressLine(sending(50, 100), 0.0, 120), "left"));
  EXPECT_FALSE(contains(progressLine(sending(50, 100), std::nullopt, 120), "/s"));
}

TEST(ResultLine, AlignsTheTexts) {
  const MacAddress mac{{2, 0, 0, 0, 1, 10}};
  EXPECT_EQ(resultLine(mac, true, "done"), "02:00:00:00:01:0A  ok      done");
  EXPECT_EQ(resultLine(mac, false, "no\nwhy"), "02:00:00:00:01:0A  failed  no why");
}

}  // namespace omniset::test
