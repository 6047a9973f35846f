#include "ui/workflow/parameter_fields.h"

#include <gtest/gtest.h>

#include "core/ipv4_address.h"

namespace omniset::test {

TEST(ParameterFields, AddressIsADottedQuadWithBlanksAroundIt) {
  EXPECT_EQ(ipv4(10, 0, 0, 1), addressOf("10.0.0.1"));
  EXPECT_EQ(ipv4(192, 168, 88, 254), addressOf(" 192.168.88.254\t"));
}

TEST(ParameterFields, AnythingElseIsNoAddress) {
  for (const char* text : {"", " ", "10", "10.0.0", "10.0.0.1.2", "10.0.0.256", "10.0.0.x",
                           "10.0 .0.1", "0.0.0.0", "255.255.255.255", "router"}) {
    EXPECT_EQ(0u, addressOf(text)) << text;
  }
}

TEST(ParameterFields, AValidAddressMayBeZeroButNotTheBroadcastAddress) {
  EXPECT_EQ(0u, validAddress("0.0.0.0"));
  EXPECT_EQ(ipv4(255, 255, 255, 254), validAddress(" 255.255.255.254 "));
  for (const char* text : {"", "10.0.0", "10.0.0.256", "255.255.255.255", " 255.255.255.255 "}) {
    EXPECT_EQ(std::nullopt, validAddress(text)) << text;
  }
}

TEST(ParameterFields, NetmaskAboveThirtyTwoOrNegativeIsThirtyTwo) {
  EXPECT_EQ(32, netmaskOf("40"));
  EXPECT_EQ(32, netmaskOf("-1"));
  EXPECT_EQ(32, netmaskOf("33"));
  EXPECT_EQ(32, netmaskOf("99999999999999999999"));
  EXPECT_EQ(32, netmaskOf("-99999999999999999999"));
}

TEST(ParameterFields, NetmaskUpToThirtyTwoIsTaken) {
  EXPECT_EQ(24, netmaskOf("24"));
  EXPECT_EQ(24, netmaskOf(" 24 "));
  EXPECT_EQ(32, netmaskOf("32"));
  EXPECT_EQ(0, netmaskOf("0"));
  EXPECT_EQ(0, netmaskOf(""));
  EXPECT_EQ(0, netmaskOf("x"));
}

TEST(ParameterFields, RequestAndFieldsTellTheSame) {
  const ParameterFields fields{true, "10.0.0.1", "24", "10.0.0.254", 115200, true, "C:\\my.rsc"};
  RouterRecord record;
  storeFields(fields, record);
  EXPECT_EQ(ipv4(10, 0, 0, 1), record.address);
  EXPECT_EQ(24, record.netmaskLength);
  EXPECT_EQ(ipv4(10, 0, 0, 254), record.gateway);
  EXPECT_EQ(115200, record.baudRate);
  EXPECT_TRUE(record.keepConfiguration);
  EXPECT_TRUE(record.useOwnScript);
  EXPECT_EQ("C:\\my.rsc", record.scriptPath);
  EXPECT_EQ(fields, fieldsOf(record));
}

TEST(ParameterFields, WhatIsNotSetIsShownEmpty) {
  RouterRecord record;
  record.baudRate = 9600;
  EXPECT_EQ((ParameterFields{false, "", "", "", 9600, false, ""}), fieldsOf(record));
}

TEST(ParameterFields, WholeAddressWithOrWithoutGatewayIsNotWarnedOf) {
  RouterRecord record;
  EXPECT_TRUE(warningsOf(record).empty());
  record.address = ipv4(10, 0, 0, 1);
  record.netmaskLength = 8;
  EXPECT_TRUE(warningsOf(record).empty());
  record.gateway = ipv4(10, 0, 0, 254);
  EXPECT_TRUE(warningsOf(record).empty());
}

}  // namespace omniset::test
