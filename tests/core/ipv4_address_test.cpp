#include "core/ipv4_address.h"

#include <gtest/gtest.h>

namespace omniset::test {
namespace {

TEST(Ipv4Address, HasTheFirstOctetInTheLowestByte) {
  EXPECT_EQ(ipv4(192, 168, 88, 1), 0x0158A8C0u);
  EXPECT_EQ(kBroadcastAddress, ipv4(255, 255, 255, 255));
}

TEST(Ipv4Address, IsShownAsADottedQuad) {
  EXPECT_EQ(dottedQuad(ipv4(192, 168, 88, 1)), "192.168.88.1");
  EXPECT_EQ(dottedQuad(0), "0.0.0.0");
  EXPECT_EQ(dottedQuad(kBroadcastAddress), "255.255.255.255");
}

TEST(Ipv4Address, ReadsWhatItShows) {
  for (const std::uint32_t address : {0u, 0x0158A8C0u, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(parseDottedQuad(dottedQuad(address)), address);
  }
}

TEST(Ipv4Address, ReadsLeadingZerosAsDecimal) {
  EXPECT_EQ(parseDottedQuad("010.001.000.009"), ipv4(10, 1, 0, 9));
}

class NotADottedQuad : public ::testing::TestWithParam<const char*> {};

TEST_P(NotADottedQuad, IsRefused) {
  EXPECT_EQ(parseDottedQuad(GetParam()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Ipv4Address, NotADottedQuad,
                         ::testing::Values("", "1", "1.2.3", "1.2.3.", "1.2.3.4.", "1.2.3.4.5",
                                           ".1.2.3", "1..2.3", "256.1.1.1", "1.1.1.256",
                                           "1.1.1.1000", "0001.1.1.1", "1.2.3.4 ", " 1.2.3.4",
                                           "1.2.3.-4", "1.2.3.+4", "1.2.3.0x4", "a.b.c.d",
                                           "1,2,3,4", "1.2.3.4/24"));

TEST(Ipv4Address, ReadsNoFurtherThanTheTextGoes) {
  EXPECT_EQ(parseDottedQuad(std::string_view("1.2.3.45", 7)), ipv4(1, 2, 3, 4));
  EXPECT_EQ(parseDottedQuad(std::string_view("1.2.3.4", 6)), std::nullopt);
}

TEST(Ipv4Address, AZeroByteEndsNothing) {
  EXPECT_EQ(parseDottedQuad(std::string_view("1.2.3.4\0", 8)), std::nullopt);
}

}  // namespace
}  // namespace omniset::test
