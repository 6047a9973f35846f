#include "link/network_interfaces.h"

#include <gmock/gmock.h>

#include "tests/contract/test_adapter.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_network_interfaces.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;

constexpr MacAddress kFirst{{0x02, 0, 0, 0, 0, 0x01}};
constexpr MacAddress kSecond{{0x02, 0, 0, 0, 0, 0xFE}};

struct SystemAdapters {
  SystemNetworkInterfaces interfaces;
};
struct NoAdapter {
  FakeNetworkInterfaces interfaces{{}};
};
struct TwoAdapters {
  FakeNetworkInterfaces interfaces{{{"eth0", kFirst}, {"eth1", kSecond}}};
};

template <class Adapters>
class NetworkInterfacesContract : public ::testing::Test {
 protected:
  NetworkInterfaces& interfaces() { return adapters_.interfaces; }

 private:
  Adapters adapters_;
};

using AllAdapters = ::testing::Types<SystemAdapters, NoAdapter, TwoAdapters>;
TYPED_TEST_SUITE(NetworkInterfacesContract, AllAdapters);

TYPED_TEST(NetworkInterfacesContract, NoAdapterHasTheAddressThatEndsTheList) {
  for (const NetworkInterface& found : this->interfaces().list()) {
    EXPECT_FALSE(found.mac.isWildcard()) << found.name;
  }
}

TYPED_TEST(NetworkInterfacesContract, ListsTheSameEachTime) {
  const auto first = this->interfaces().list();
  const auto second = this->interfaces().list();
  ASSERT_EQ(first.size(), second.size());
  for (std::size_t i = 0; i < first.size(); ++i) EXPECT_EQ(first[i].mac, second[i].mac);
}

TYPED_TEST(NetworkInterfacesContract, FoundAddressesAreThoseListedAndAnAllZeroEnd) {
  std::vector<MacAddress> expected;
  for (const NetworkInterface& found : this->interfaces().list()) expected.push_back(found.mac);
  expected.push_back(MacAddress{});
  const SilentTrace silent;
  EXPECT_EQ(findInterfaces(this->interfaces()), expected);
}

TYPED_TEST(NetworkInterfacesContract, EachIsTracedWithItsIndex) {
  std::string expected;
  int index = 0;
  for (const NetworkInterface& found : this->interfaces().list()) {
    expected += "iface " + std::to_string(index++) + ": " + found.mac.text() + "\n";
  }
  const CapturedTrace captured;
  findInterfaces(this->interfaces());
  EXPECT_EQ(captured.text(), expected);
}

TEST(FindInterfaces, WithoutAnAdapterIsOnlyTheEnd) {
  NoAdapter none;
  const CapturedTrace captured;
  EXPECT_THAT(findInterfaces(none.interfaces), ElementsAre(MacAddress{}));
  EXPECT_EQ(captured.text(), "");
}

TEST(FindInterfaces, KeepsTheOrderOfTwoAdapters) {
  TwoAdapters two;
  const CapturedTrace captured;
  EXPECT_THAT(findInterfaces(two.interfaces), ElementsAre(kFirst, kSecond, MacAddress{}));
  EXPECT_EQ(captured.text(), "iface 0: 02:00:00:00:00:01\niface 1: 02:00:00:00:00:FE\n");
}

TEST(SystemNetworkInterfaces, ListsTheOneAdapterOfItsNetwork) {
  const auto adapter = testAdapter();
  if (!adapter) GTEST_SKIP() << "needs a network with one adapter, OMNISET_TEST_ADAPTER=NAME=MAC";
  const auto found = SystemNetworkInterfaces().list();
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].mac, adapter->mac);
  EXPECT_TRUE(found[0].name == adapter->name || found[0].name.empty()) << found[0].name;
}

}  // namespace
}  // namespace omniset::test
