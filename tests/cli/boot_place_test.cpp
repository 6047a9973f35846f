#include "cli/boot_place.h"

#include <gmock/gmock.h>

#include "cli/bad_input.h"
#include "core/error.h"
#include "core/ipv4_address.h"
#include "tests/fakes/fake_local_addresses.h"
#include "tests/fakes/fake_udp_socket.h"

namespace omniset::test {

namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr std::uint32_t kFree = ipv4(192, 168, 88, 20);

const std::vector<NetworkInterface> kAdapters = {
    {"eth0", {{2, 0, 0, 0, 0, 1}}}, {"eth1", {{2, 0, 0, 0, 0, 2}}}, {"eth2", {{2, 0, 0, 0, 0, 3}}}};
const std::vector<LocalAddress> kAddresses = {{1, ipv4(127, 0, 0, 1), ipv4(255, 0, 0, 0), "lo"},
                                              {2, ipv4(10, 0, 0, 1), ipv4(255, 0, 0, 0), "eth0"},
                                              {3, ipv4(192, 168, 88, 1), kMask24, "eth1"},
                                              {5, ipv4(172, 16, 0, 1), kMask24, "eth9"}};

AdapterChoice chosen(const std::string& wanted, std::uint32_t client,
                     const std::vector<LocalAddress>& rows = kAddresses,
                     const std::vector<NetworkInterface>& adapters = kAdapters) {
  FakeLocalAddresses addresses(rows);
  return chooseBootAdapter(adapters, wanted, client, addresses);
}

std::string refusalOf(const std::string& wanted, std::uint32_t client,
                      const std::vector<LocalAddress>& rows = kAddresses) {
  try {
    chosen(wanted, client, rows);
  } catch (const BadInput& e) {
    return e.what();
  }
  return "taken";
}

std::string failureOf(const std::shared_ptr<FakeNetwork>& network) {
  try {
    checkBootPorts([&] { return std::make_unique<FakeUdpSocket>(network); }, "eth1");
  } catch (const BadInput&) {
    return "bad input";
  } catch (const Failure& e) {
    return e.what();
  }
  return "none";
}

}  // namespace

TEST(BootAdapter, IsTheOneOnWhoseSubnetTheAddressIs) {
  EXPECT_EQ(chosen("", kFree).adapter.name, "eth1");
  EXPECT_EQ(chosen("", ipv4(10, 3, 4, 5)).adapter.name, "eth0");
  EXPECT_FALSE(chosen("", kFree).isGuess);
}

TEST(BootAdapter, OneThatIsDownIsPassedOverForAnotherOnThatSubnet) {
  auto rows = kAddresses;
  rows.insert(rows.begin(), {9, ipv4(192, 168, 88, 3), kMask24, "eth9"});
  EXPECT_EQ(chosen("", kFree, rows).adapter.name, "eth1");
}

TEST(BootAdapter, OneThatIsDownIsRefusedByItsName) {
  EXPECT_THAT(refusalOf("", ipv4(172, 16, 0, 20)),
              HasSubstr("no Ethernet adapter 'eth9' that is up"));
}

TEST(BootAdapter, GivenOneIsTaken) {
  EXPECT_EQ(chosen("eth1", kFree).adapter.name, "eth1");
  EXPECT_THAT(refusalOf("eth7", kFree), HasSubstr("no Ethernet adapter 'eth7' that is up"));
}

TEST(BootAdapter, GivenOneOnAnotherSubnetIsRefusedWithTheRightOne) {
  EXPECT_EQ(refusalOf("eth0", kFree),
            "The address 192.168.88.20 is on the subnet of the adapter eth1, not on that of eth0: "
            "give --interface eth1, or choose an address on the subnet of eth0.");
}

TEST(BootAdapter, GivenOneWithoutAnAddressIsRefused) {
  EXPECT_EQ(refusalOf("eth2", kFree),
            "The adapter eth2 has no IPv4 address, so that a PC that boots could not reach this "
            "computer: give it a free address beside 192.168.88.20.");
}

TEST(BootAdapter, AddressOnNoSubnetIsRefusedWithTheSubnetsThereAre) {
  EXPECT_THAT(refusalOf("", ipv4(192, 168, 99, 20)),
              HasSubstr("192.168.88.1 (netmask 255.255.255.0)"));
  EXPECT_THAT(refusalOf("eth1", ipv4(192, 168, 99, 20)), HasSubstr("on no subnet"));
}

TEST(BootAdapter, AddressThatCannotBeAPcsIsRefused) {
  for (const std::string wanted : {"", "eth1"}) {
    EXPECT_THAT(refusalOf(wanted, ipv4(192, 168, 88, 1)), HasSubstr("this computer's own"));
    EXPECT_THAT(refusalOf(wanted, ipv4(192, 168, 88, 0)), HasSubstr("its whole subnet"));
    EXPECT_THAT(refusalOf(wanted, ipv4(192, 168, 88, 255)), HasSubstr("its whole subnet"));
  }
}

TEST(BootAdapter, ComputerWithoutAnAddressIsToldAndNoMistakeOfTheArguments) {
  try {
    chosen("", kFree, {});
    ADD_FAILURE() << "it was taken";
  } catch (const BadInput&) {
    ADD_FAILURE() << "bad input";
  } catch (const Failure& e) {
    EXPECT_THAT(e.what(), StartsWith("This computer has no network address"));
  }
}

TEST(BootAdapter, WhereAdaptersHaveNoNamesTheAddressDecides) {
  const std::vector<NetworkInterface> numbered = {{"", {{2, 0, 0, 0, 0, 1}}},
                                                  {"", {{2, 0, 0, 0, 0, 2}}}};
  const std::vector<LocalAddress> rows = {{1, ipv4(10, 0, 0, 1), ipv4(255, 0, 0, 0), ""},
                                          {2, ipv4(192, 168, 88, 1), kMask24, ""}};
  EXPECT_EQ(chosen("", kFree, rows, numbered).shownName, "02:00:00:00:00:01");
  EXPECT_TRUE(chosen("", kFree, rows, numbered).isGuess);
  EXPECT_EQ(chosen("1", kFree, rows, numbered).adapter.mac, numbered[1].mac);
  EXPECT_THROW(chosen("2", kFree, rows, numbered), BadInput);
  EXPECT_THROW(chosen("1", ipv4(172, 16, 0, 2), rows, numbered), BadInput);
}

TEST(BootPorts, AreTriedBeforeAnythingElse) {
  const auto network = std::make_shared<FakeNetwork>();
  EXPECT_EQ(failureOf(network), "none");
  EXPECT_THAT(network->calls, testing::IsSupersetOf({"bind 67", "bind 69"}));
}

TEST(BootPorts, AreNotSharedWithAnotherThatAnswers) {
  const auto network = std::make_shared<FakeNetwork>();
  EXPECT_EQ(failureOf(network), "none");
  ASSERT_GE(network->calls.size(), 2u);
  EXPECT_EQ(network->calls[0], "open");
  EXPECT_EQ(network->calls[1], "bind 67");
}

TEST(BootPorts, TakenOneIsAFailureThatSaysWhatToDo) {
  const auto network = std::make_shared<FakeNetwork>();
  network->failing = "bind";
  EXPECT_THAT(failureOf(network), StartsWith("Network booting needs the UDP ports 67 and 69"));
}

TEST(BootServiceFailure, OfAnAdapterNamesIt) {
  EXPECT_THAT(bootServiceFailure("setsockopt() SO_BINDTODEVICE failed: x", "eth1"),
              StartsWith("The adapter eth1 cannot be used"));
  EXPECT_THAT(bootServiceFailure("recv failed: x", "eth1"), StartsWith("Network booting cannot"));
}

TEST(BootSentence, NamesTheAdapterWhereItHasAName) {
  EXPECT_EQ(bootSentence({kAdapters[1], "eth1", false}, kFree),
            "Answering boot requests on eth1; PCs get 192.168.88.20.");
  EXPECT_EQ(bootSentence({{"", {{2, 0, 0, 0, 0, 1}}}, "02:00:00:00:00:01", true}, kFree),
            "Answering boot requests; PCs get 192.168.88.20.");
}

}  // namespace omniset::test
