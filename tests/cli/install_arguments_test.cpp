// The arguments of "install".

#include "core/ipv4_address.h"
#include "parse_arguments.h"

namespace omniset::test {

namespace {

const std::string kInstall = "install --packages p --select-all --all ";

InstallOptions with(const std::string& more) {
  return understood<InstallOptions>(kInstall + more);
}

}  // namespace

TEST(InstallArguments, DefaultsAreThoseOfAPlainInstallation) {
  const InstallOptions options = with("");
  EXPECT_EQ(options.folder, "p");
  EXPECT_TRUE(options.select.empty());
  EXPECT_EQ(options.choice, RouterChoice::kAll);
  EXPECT_EQ(options.address, 0u);
  EXPECT_EQ(options.baudRate, 9600);
  EXPECT_FALSE(options.baudGiven);
  EXPECT_FALSE(options.keepConfiguration);
  EXPECT_FALSE(options.reboot);
  EXPECT_EQ(options.wait, 60 * kSecond);
  EXPECT_FALSE(options.json);
}

TEST(InstallArguments, EverythingGivenIsTaken) {
  const InstallOptions options = with(
      "--interface eth1 --address 192.168.88.1/24 --gateway 192.168.88.254 --baud 115200 "
      "--reboot --wait 90 --json");
  EXPECT_EQ(options.interfaceName, "eth1");
  EXPECT_EQ(options.address, ipv4(192, 168, 88, 1));
  EXPECT_EQ(options.netmaskLength, 24);
  EXPECT_EQ(options.gateway, ipv4(192, 168, 88, 254));
  EXPECT_EQ(options.baudRate, 115200);
  EXPECT_TRUE(options.baudGiven);
  EXPECT_TRUE(options.reboot);
  EXPECT_EQ(options.wait, 90 * kSecond);
  EXPECT_TRUE(options.json);
  EXPECT_EQ(with("--script my.rsc").script, "my.rsc");
  EXPECT_TRUE(with("--keep-config").keepConfiguration);
}

TEST(InstallArguments, SelectionIsAListThatMayBeContinued) {
  const auto options =
      understood<InstallOptions>("install --packages p --select system,routing --select ppp --all");
  EXPECT_EQ(options.select, (std::vector<std::string>{"system", "routing", "ppp"}));
}

TEST(InstallArguments, SelectionIsAskedForOnce) {
  expectComplaint("install --packages p --all", "--select NAME[,NAME...] or --select-all");
  expectComplaint("install --packages p --all --select a --select-all", "leave --select out");
}

TEST(InstallArguments, SelectionOfNoNamesIsRefused) {
  expectComplaint("install --packages p --all --select ,", "--select");
}

TEST(InstallArguments, EmptyValueIsRefusedRatherThanForgotten) {
  for (const std::string option :
       {"--packages", "--select", "--router", "--first", "--interface", "--address", "--gateway",
        "--baud", "--script", "--boot", "--wait"}) {
    const auto parsed =
        parseArguments({"install", "--packages", "p", "--select-all", "--all", option, ""});
    ASSERT_TRUE(std::holds_alternative<EarlyEnd>(parsed)) << option;
    EXPECT_EQ(std::get<EarlyEnd>(parsed).exitCode, kExitBadInput);
    EXPECT_NE(std::get<EarlyEnd>(parsed).text.find(option), std::string::npos);
  }
}

TEST(InstallArguments, PackagesFolderIsAskedFor) {
  expectComplaint("install --select-all --all", "--packages FOLDER");
}

TEST(InstallArguments, RoutersAreNamedCountedOrAll) {
  const std::string start = "install --packages p --select-all ";
  const auto named = understood<InstallOptions>(
      start + "--router 02:00:00:00:01:0a,02-00-00-00-01-0B --router 02:00:00:00:01:0C");
  EXPECT_EQ(named.choice, RouterChoice::kNamed);
  ASSERT_EQ(named.routers.size(), 3u);
  EXPECT_EQ(named.routers[0].text(), "02:00:00:00:01:0A");
  EXPECT_EQ(named.routers[1].text(), "02:00:00:00:01:0B");
  const auto first = understood<InstallOptions>(start + "--first 3");
  EXPECT_EQ(first.choice, RouterChoice::kFirst);
  EXPECT_EQ(first.count, 3u);
  EXPECT_EQ(understood<InstallOptions>(start + "--all").choice, RouterChoice::kAll);
}

TEST(InstallArguments, ExactlyOneWayToChooseRoutersIsAskedFor) {
  const std::string start = "install --packages p --select-all ";
  expectComplaint(start, "--router MAC[,MAC...], --first N or --all");
  expectComplaint(start + "--all --first 2", "only one of --router, --first and --all");
  expectComplaint(start + "--router 02:00:00:00:01:0A --all", "only one of");
}

TEST(InstallArguments, BadMacAddressIsRefused) {
  for (const char* bad : {"02:00:00:00:01", "zz:00:00:00:01:02", "00:00:00:00:00:00", "eth0"}) {
    expectComplaint(std::string("install --packages p --select-all --router ") + bad,
                    "'" + std::string(bad) + "' is not a router's MAC address");
  }
}

TEST(InstallArguments, ZeroRoutersAreRefused) {
  expectComplaint("install --packages p --select-all --first 0", "is not a number of routers");
}

TEST(InstallArguments, AddressNeedsALengthFrom1To32) {
  for (const char* bad :
       {"192.168.88.1", "192.168.88.1/0", "192.168.88.1/33", "192.168.88/24", "192.168.88.256/24",
        "192.168.88.1/", "192.168.88.1/2x", "/24", "x/24", "1.2.3.4/-1", "1.2.3.4/24/24"}) {
    expectComplaint(kInstall + "--address " + bad, "write A.B.C.D/LEN with LEN from 1 to 32");
  }
  EXPECT_EQ(with("--address 10.0.0.1/1").netmaskLength, 1);
  EXPECT_EQ(with("--address 10.0.0.1/32").netmaskLength, 32);
}

TEST(InstallArguments, AddressOfZerosIsRefused) {
  expectComplaint(kInstall + "--address 0.0.0.0/24", "would give the router no address");
}

TEST(InstallArguments, GatewayIsAnAddressWithoutALength) {
  for (const char* bad : {"192.168.88.1/24", "0.0.0.0", "gateway", "1.2.3"}) {
    expectComplaint(kInstall + "--address 10.0.0.1/8 --gateway " + bad,
                    "is not a router's address: write A.B.C.D");
  }
}

TEST(InstallArguments, GatewayWithoutAnAddressIsRefused) {
  expectComplaint(kInstall + "--gateway 10.0.0.1",
                  "--gateway would not be used without an address");
}

TEST(InstallArguments, SpeedIsOneOfASerialPort) {
  for (const char* good : {"1200", "2400", "4800", "9600", "19200", "38400", "57600", "115200"}) {
    EXPECT_EQ(with(std::string("--address 10.0.0.1/8 --baud ") + good).baudRate, std::stoi(good));
  }
  for (const char* bad : {"0", "9601", "-9600", "fast", "300", "9600x"}) {
    expectComplaint(kInstall + "--address 10.0.0.1/8 --baud " + bad, "write one of 1200, 2400");
  }
}

TEST(InstallArguments, WhatWouldNotBeUsedIsRefused) {
  expectComplaint(kInstall + "--script s --keep-config", "--script would not be used");
  expectComplaint(kInstall + "--script s --address 10.0.0.1/8",
                  "--address would not be used with --script");
  expectComplaint(kInstall + "--keep-config --address 10.0.0.1/8",
                  "--address would not be used with --keep-config");
  expectComplaint(kInstall + "--keep-config --gateway 10.0.0.1",
                  "--gateway would not be used with --keep-config");
}

TEST(InstallArguments, WaitIsAWholeNumberOfSecondsFromOne) {
  expectComplaint(kInstall + "--wait 0", "--wait '0' is not a number of seconds");
  expectComplaint(kInstall + "--wait soon", "is not a number of seconds");
}

}  // namespace omniset::test
