#include "boot/boot_checks.h"

#include <gmock/gmock.h>

#include "core/error.h"
#include "core/ipv4_address.h"
#include "tests/contract/raised_text.h"
#include "tests/fakes/fake_local_addresses.h"
#include "tests/fakes/fake_udp_socket.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::string problemOf(std::uint32_t client, std::vector<LocalAddress> rows) {
  FakeLocalAddresses addresses(std::move(rows));
  return clientAddressProblem(client, addresses).value_or("none");
}

const LocalAddress kLoopback{1, ipv4(127, 0, 0, 1), ipv4(255, 0, 0, 0), "lo"};
const LocalAddress kOffice{2, ipv4(10, 0, 0, 1), ipv4(255, 0, 0, 0), "eth0"};
const LocalAddress kRack{3, ipv4(192, 168, 88, 5), kMask24, "eth1"};

TEST(ClientAddressProblem, AFreeAddressOnASubnetHasNone) {
  EXPECT_EQ(problemOf(ipv4(192, 168, 88, 20), {kLoopback, kOffice, kRack}), "none");
  EXPECT_EQ(problemOf(ipv4(10, 255, 0, 20), {kLoopback, kOffice, kRack}), "none");
}

TEST(ClientAddressProblem, OnNoSubnetTellsTheSubnetsThereAre) {
  EXPECT_THAT(problemOf(ipv4(172, 16, 0, 9), {kLoopback, kOffice, kRack}),
              HasSubstr("choose a free address beside one of these: 10.0.0.1 (netmask 255.0.0.0), "
                        "192.168.88.5 (netmask 255.255.255.0)."));
}

TEST(ClientAddressProblem, WithoutAnAddressOfItsOwnTheComputerNeedsOne) {
  EXPECT_THAT(problemOf(ipv4(192, 168, 88, 20), {}), StartsWith("This computer has no network"));
  EXPECT_THAT(problemOf(ipv4(127, 0, 0, 2), {kLoopback}),
              StartsWith("This computer has no network"));
}

TEST(ClientAddressProblem, AnAdapterWithoutAnAddressIsNoSubnet) {
  EXPECT_THAT(problemOf(ipv4(172, 16, 0, 9), {{4, 0, 0, {}}, kRack}), HasSubstr("is on no subnet"));
}

TEST(ClientAddressProblem, AnAdapterWithoutAnAddressThatIsTakenFirstIsTold) {
  EXPECT_THAT(problemOf(ipv4(192, 168, 88, 20), {{4, 0, 0, {}}, kRack}),
              HasSubstr("disable the adapters that are not in use"));
  EXPECT_EQ(problemOf(ipv4(192, 168, 88, 20), {kRack, {4, 0, 0, {}}}), "none");
}

TEST(ClientAddressProblem, OnASubnetOfTwoComputersBothAddressesAreComputers) {
  const LocalAddress pair{3, ipv4(10, 9, 9, 1), ipv4(255, 255, 255, 254), {}};
  EXPECT_EQ(problemOf(ipv4(10, 9, 9, 0), {pair}), "none");
  const LocalAddress alone{3, ipv4(10, 9, 9, 1), ipv4(255, 255, 255, 255), {}};
  EXPECT_THAT(problemOf(ipv4(10, 9, 9, 1), {alone}), HasSubstr("this computer's own"));
  EXPECT_THAT(problemOf(ipv4(10, 9, 9, 2), {alone}), HasSubstr("is on no subnet"));
}

TEST(ClientAddressProblem, ThisComputersOwnAddressIsNotFree) {
  EXPECT_THAT(problemOf(ipv4(192, 168, 88, 5), {kRack}), HasSubstr("this computer's own"));
}

TEST(ClientAddressProblem, TheSubnetsFirstAndLastAddressBelongToNoComputer) {
  EXPECT_THAT(problemOf(ipv4(192, 168, 88, 0), {kRack}), HasSubstr("whole subnet"));
  EXPECT_THAT(problemOf(ipv4(192, 168, 88, 255), {kRack}), HasSubstr("whole subnet"));
}

TEST(TryBootPorts, OpensBothPortsAndSharesNeither) {
  const auto network = std::make_shared<FakeNetwork>();
  tryBootPorts([&] { return std::make_unique<FakeUdpSocket>(network); });
  EXPECT_THAT(network->calls, ElementsAre("open", "bind 67", "open", "bind 69"));
}

TEST(TryBootPorts, ATakenPortIsRaised) {
  const auto network = std::make_shared<FakeNetwork>();
  network->failing = "bind";
  EXPECT_THAT(raisedText<SocketExc>(
                  [&] { tryBootPorts([&] { return std::make_unique<FakeUdpSocket>(network); }); }),
              StartsWith("bind failed"));
}

TEST(BootFailureText, OfATakenPortNamesThePortsAndWhatToDo) {
  const std::string text = bootFailureText("bind failed: Address already in use\nError code: 98");
  EXPECT_THAT(text, StartsWith("Network booting needs the UDP ports 67 and 69,"));
  EXPECT_THAT(text, HasSubstr("End that server"));
  EXPECT_THAT(text, testing::EndsWith("(bind failed: Address already in use Error code: 98)"));
}

TEST(BootFailureText, OfAnythingElseIsAboutTheNetwork) {
  EXPECT_THAT(bootFailureText("select failed: x"), StartsWith("Network booting cannot go on"));
}

}  // namespace
}  // namespace omniset::test
