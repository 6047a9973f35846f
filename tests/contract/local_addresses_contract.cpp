#include <gmock/gmock.h>

#include <algorithm>

#include "boot/local_address.h"
#include "core/ipv4_address.h"
#include "tests/contract/real_network.h"
#include "tests/contract/test_adapter.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_local_addresses.h"

namespace omniset::test {
namespace {

struct SystemAddresses {
  SystemLocalAddresses addresses;
};
struct NoAddress {
  FakeLocalAddresses addresses{{}};
};
struct OneAddress {
  FakeLocalAddresses addresses = oneLocalAddress();
};

template <class Holder>
class LocalAddressesContract : public ::testing::Test {
 protected:
  LocalAddresses& addresses() { return holder_.addresses; }

 private:
  Holder holder_;
};

using AllAddresses = ::testing::Types<SystemAddresses, NoAddress, OneAddress>;
TYPED_TEST_SUITE(LocalAddressesContract, AllAddresses);

TYPED_TEST(LocalAddressesContract, ListsTheSameEachTime) {
  const auto first = this->addresses().list();
  const auto second = this->addresses().list();
  ASSERT_EQ(first.size(), second.size());
  for (std::size_t i = 0; i < first.size(); ++i) {
    EXPECT_EQ(first[i].index, second[i].index);
    EXPECT_EQ(first[i].address, second[i].address);
    EXPECT_EQ(first[i].mask, second[i].mask);
    EXPECT_EQ(first[i].interfaceName, second[i].interfaceName);
  }
}

TYPED_TEST(LocalAddressesContract, MasksAreRowsOfOnesFromTheFirstBitOn) {
  for (const LocalAddress& local : this->addresses().list()) {
    bool ended = false;
    for (int bit = 0; bit < 32; ++bit) {
      // The first octet is in the lowest byte, its first bit the highest there.
      const bool isSet = (local.mask >> (bit / 8 * 8 + 7 - bit % 8) & 1) != 0;
      EXPECT_FALSE(ended && isSet) << dottedQuad(local.mask);
      ended = !isSet;
    }
  }
}

TYPED_TEST(LocalAddressesContract, OwnAddressIsFoundForAClientThatHasIt) {
  const SilentTrace silent;
  for (const LocalAddress& local : this->addresses().list()) {
    const std::uint32_t found = findLocalAddress(local.address, this->addresses());
    EXPECT_EQ(found & local.mask, local.address & local.mask);
  }
}

TEST(SystemLocalAddresses, HaveTheLoopbackOneWithItsMask) {
  const auto all = SystemLocalAddresses().list();
  const auto loopback = std::find_if(
      all.begin(), all.end(), [](const LocalAddress& local) { return local.address == kLoopback; });
  if (loopback == all.end()) GTEST_SKIP() << "needs a network whose loopback is up";
  EXPECT_EQ(loopback->mask, ipv4(255, 0, 0, 0));
  EXPECT_NE(loopback->index, 0u);
}

TEST(SystemLocalAddresses, ListTheAddressOfTheAdapterOfItsNetwork) {
  const auto adapter = testAdapter();
  if (!adapter) GTEST_SKIP() << "needs a network with one adapter, OMNISET_TEST_ADAPTER=NAME=MAC";
  const auto all = SystemLocalAddresses().list();
  const auto local = addressOnSubnetOf(ipv4(192, 168, 88, 99), all);
  ASSERT_TRUE(local);
  EXPECT_EQ(local->address, ipv4(192, 168, 88, 1));
  EXPECT_EQ(local->mask, ipv4(255, 255, 255, 0));
  EXPECT_TRUE(local->interfaceName == adapter->name || local->interfaceName.empty());
}

}  // namespace
}  // namespace omniset::test
