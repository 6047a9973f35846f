// The arguments of "boot", and those of "install" that boot PCs.

#include "core/ipv4_address.h"
#include "parse_arguments.h"

namespace omniset::test {

namespace {

const std::string kInstall = "install --packages p --select-all --all ";

}  // namespace

TEST(BootArguments, ClientAddressIsEnough) {
  const auto options = understood<BootOptions>("boot --client 192.168.88.20");
  EXPECT_EQ(options.clientAddress, ipv4(192, 168, 88, 20));
  EXPECT_EQ(options.interfaceName, "");
  EXPECT_FALSE(options.json);
}

TEST(BootArguments, EverythingGivenIsTaken) {
  const auto options = understood<BootOptions>("boot --client 10.0.0.7 --interface eth1 --json");
  EXPECT_EQ(options.clientAddress, ipv4(10, 0, 0, 7));
  EXPECT_EQ(options.interfaceName, "eth1");
  EXPECT_TRUE(options.json);
  EXPECT_TRUE(std::get<Arguments>(parseArguments(words("boot --client 10.0.0.7 --trace"))).trace);
}

TEST(BootArguments, ClientAddressIsAskedFor) {
  expectComplaint("boot", "Say which address PCs get while they boot: --client A.B.C.D.");
}

TEST(BootArguments, AddressThatNoPcCanHaveIsRefused) {
  for (const char* bad :
       {"0.0.0.0", "0.1.2.3", "255.255.255.255", "224.0.0.1", "239.1.2.3", "240.0.0.1", "127.0.0.1",
        "127.9.9.9", "192.168.88", "192.168.88.256", "192.168.88.20/24", "pc", "1"}) {
    expectComplaint(std::string("boot --client ") + bad,
                    "--client '" + std::string(bad) +
                        "' is not an address that a PC can have: write A.B.C.D, a free address "
                        "on the subnet of this computer, for example --client 192.168.88.20.");
    expectComplaint(kInstall + "--boot " + bad, "for example --boot 192.168.88.20.");
  }
}

TEST(BootArguments, LowestAndHighestAddressesOfPcsAreTaken) {
  EXPECT_EQ(understood<BootOptions>("boot --client 1.0.0.1").clientAddress, ipv4(1, 0, 0, 1));
  EXPECT_EQ(understood<BootOptions>("boot --client 223.255.255.254").clientAddress,
            ipv4(223, 255, 255, 254));
}

TEST(BootArguments, EmptyValueIsRefusedRatherThanForgotten) {
  for (const std::string option : {"--client", "--interface"}) {
    const auto parsed = parseArguments({"boot", option, ""});
    ASSERT_TRUE(std::holds_alternative<EarlyEnd>(parsed)) << option;
    EXPECT_EQ(std::get<EarlyEnd>(parsed).exitCode, kExitBadInput);
    EXPECT_NE(std::get<EarlyEnd>(parsed).text.find(option + " is empty"), std::string::npos);
  }
}

TEST(BootArguments, InstallationBootsOnlyOnRequest) {
  EXPECT_EQ(understood<InstallOptions>(kInstall).bootAddress, 0u);
  const auto options = understood<InstallOptions>(kInstall + "--boot 192.168.88.20");
  EXPECT_EQ(options.bootAddress, ipv4(192, 168, 88, 20));
}

TEST(BootArguments, InstallationThatBootsWaitsTenMinutesUnlessTold) {
  EXPECT_EQ(understood<InstallOptions>(kInstall + "--boot 10.0.0.7").wait, 600 * kSecond);
  EXPECT_EQ(understood<InstallOptions>(kInstall + "--boot 10.0.0.7 --wait 90").wait, 90 * kSecond);
}

}  // namespace omniset::test
