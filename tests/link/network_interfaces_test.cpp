#include "link/network_interfaces.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_network_interfaces.h"
#include "tests/link/link_fixture.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;

TEST(FindInterfaces, ReturnsTheAddressesInOrderEndedByAllZeros) {
  const SilentTrace silent;
  FakeNetworkInterfaces two({{"eth1", kStrangerMac}, {"eth0", kInstallerMac}});
  EXPECT_THAT(findInterfaces(two), ElementsAre(kStrangerMac, kInstallerMac, kNobody));
}

TEST(FindInterfaces, TracesEachAdapterWithItsIndexFromZero) {
  const CapturedTrace trace;
  FakeNetworkInterfaces two({{"", kInstallerMac}, {"", kStrangerMac}});
  findInterfaces(two);
  EXPECT_EQ(trace.text(), "iface 0: 02:00:00:00:00:01\niface 1: 02:00:00:0A:0B:0C\n");
}

TEST(FindInterfaces, ComputerWithoutAdaptersGivesOnlyTheEnd) {
  const CapturedTrace trace;
  FakeNetworkInterfaces none({});
  EXPECT_THAT(findInterfaces(none), ElementsAre(kNobody));
  EXPECT_EQ(trace.text(), "");
}

}  // namespace
}  // namespace omniset::test
