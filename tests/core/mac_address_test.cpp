#include "core/mac_address.h"

#include <gtest/gtest.h>

namespace omniset::test {
namespace {

constexpr MacAddress kMac{{0x02, 0x00, 0x00, 0x01, 0x02, 0xAB}};

TEST(MacAddress, IsShownInUpperCaseWithColons) {
  EXPECT_EQ(kMac.text(), "02:00:00:01:02:AB");
}

TEST(MacAddress, AllZerosIsTheWildcard) {
  EXPECT_TRUE(MacAddress{}.isWildcard());
  EXPECT_EQ(MacAddress{}.text(), "00:00:00:00:00:00");
}

TEST(MacAddress, OneBitAnywhereMakesItNoWildcard) {
  for (std::size_t i = 0; i < 6; ++i) {
    MacAddress mac;
    mac.bytes[i] = 1;
    EXPECT_FALSE(mac.isWildcard()) << i;
  }
}

TEST(MacAddress, IsComparedByteByByteFromTheFirst) {
  const MacAddress low{{0x01, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}};
  const MacAddress high{{0x80, 0, 0, 0, 0, 0}};
  EXPECT_LT(low, high);
  EXPECT_LT(kMac, (MacAddress{{0x02, 0x00, 0x00, 0x01, 0x02, 0xAC}}));
  EXPECT_EQ(kMac, (MacAddress{{0x02, 0x00, 0x00, 0x01, 0x02, 0xAB}}));
}

TEST(MacAddress, ReadsWhatItShows) {
  EXPECT_EQ(MacAddress::parse(kMac.text()), kMac);
}

TEST(MacAddress, ReadsEitherCaseAndHyphens) {
  EXPECT_EQ(MacAddress::parse("02:00:00:01:02:aB"), kMac);
  EXPECT_EQ(MacAddress::parse("02-00-00-01-02-AB"), kMac);
}

class NotAMacAddress : public ::testing::TestWithParam<const char*> {};

TEST_P(NotAMacAddress, IsRefused) {
  EXPECT_EQ(MacAddress::parse(GetParam()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(MacAddress, NotAMacAddress,
                         ::testing::Values("", "02", "02:00:00:01:02", "02:00:00:01:02:A",
                                           "02:00:00:01:02:ABC", "02:00:00:01:02:AB ",
                                           "02:00:00:01:02:AG", "0x:00:00:01:02:AB",
                                           "+2:00:00:01:02:AB", "-2:00:00:01:02:AB",
                                           " 2:00:00:01:02:AB", "02:00-00:01:02:AB",
                                           "02-00-00-01-02:AB", "02.00.00.01.02.AB",
                                           "020000.0102AB.abc", "2:0:0:1:2:AB:00:00"));

TEST(MacAddress, AZeroByteIsNoDigit) {
  EXPECT_EQ(MacAddress::parse(std::string_view("02:00:00:01:02:A\0", 17)), std::nullopt);
}

}  // namespace
}  // namespace omniset::test
