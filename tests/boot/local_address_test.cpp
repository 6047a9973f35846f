#include "boot/local_address.h"

#include <gmock/gmock.h>

#include "core/ipv4_address.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_local_addresses.h"

namespace omniset::test {
namespace {

FakeLocalAddresses twoAddresses() {
  return FakeLocalAddresses({{1, ipv4(10, 0, 0, 1), ipv4(255, 0, 0, 0), "eth0"},
                             {7, ipv4(192, 168, 88, 5), kMask24, "eth1"}});
}

TEST(FindLocalAddress, IsThatOnTheClientsSubnet) {
  FakeLocalAddresses addresses = twoAddresses();
  const CapturedTrace captured;
  EXPECT_EQ(findLocalAddress(ipv4(192, 168, 88, 20), addresses), ipv4(192, 168, 88, 5));
  EXPECT_EQ(captured.text(),
            "ip count: 2\n1: 10.0.0.1/255.0.0.0\n7: 192.168.88.5/255.255.255.0\n"
            "my address: 192.168.88.5\n");
}

TEST(FindLocalAddress, ForAClientOnNoSubnetIsTheFirst) {
  FakeLocalAddresses addresses = twoAddresses();
  const SilentTrace silent;
  EXPECT_EQ(findLocalAddress(ipv4(172, 16, 0, 9), addresses), ipv4(10, 0, 0, 1));
}

TEST(FindLocalAddress, OfTwoOnTheSubnetIsTheFirstAndTheRestIsNotTraced) {
  FakeLocalAddresses addresses(
      {{1, ipv4(10, 0, 0, 1), ipv4(255, 0, 0, 0), {}}, {2, ipv4(10, 0, 0, 2), kMask24, {}}});
  const CapturedTrace captured;
  EXPECT_EQ(findLocalAddress(ipv4(10, 0, 0, 9), addresses), ipv4(10, 0, 0, 1));
  EXPECT_EQ(captured.text(), "ip count: 2\n1: 10.0.0.1/255.0.0.0\nmy address: 10.0.0.1\n");
}

TEST(FindLocalAddress, AMaskOfNoBitsTakesEverybody) {
  FakeLocalAddresses addresses({{1, 0, 0, {}}, {2, ipv4(10, 0, 0, 2), kMask24, {}}});
  const SilentTrace silent;
  EXPECT_EQ(findLocalAddress(ipv4(10, 0, 0, 9), addresses), 0u);
}

TEST(FindLocalAddress, WithoutAnyAddressIsNone) {
  FakeLocalAddresses addresses({});
  const CapturedTrace captured;
  EXPECT_EQ(findLocalAddress(ipv4(10, 0, 0, 9), addresses), 0u);
  EXPECT_EQ(captured.text(), "ip count: 0\nmy address: 0.0.0.0\n");
}

}  // namespace
}  // namespace omniset::test
