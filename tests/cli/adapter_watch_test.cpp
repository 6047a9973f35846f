#include "cli/adapter_watch.h"

#include <gtest/gtest.h>

#include "core/ipv4_address.h"

namespace omniset::test {
namespace {

constexpr std::uint32_t kAddress = ipv4(192, 168, 88, 1);
constexpr std::uint32_t kMask = ipv4(255, 255, 255, 0);

class AdapterWatchTest : public ::testing::Test {
 protected:
  struct Rows : LocalAddresses {
    std::vector<LocalAddress> rows{{4, kAddress, kMask, "eth1"}};
    std::vector<LocalAddress> list() override { return rows; }
  };

  Rows addresses;
  AdapterWatch watch{"eth1", addresses};
};

TEST_F(AdapterWatchTest, TheSameAdapterIsNotReplaced) {
  EXPECT_FALSE(watch.isReplaced());
  addresses.rows[0].address = ipv4(10, 0, 0, 1);
  EXPECT_FALSE(watch.isReplaced());
}

TEST_F(AdapterWatchTest, OneThatHasLostItsAddressMayGetItBack) {
  const auto before = addresses.rows;
  addresses.rows.clear();
  EXPECT_FALSE(watch.isReplaced());
  addresses.rows = before;
  EXPECT_FALSE(watch.isReplaced());
}

TEST_F(AdapterWatchTest, OneThatWasTakenAwayIsReplacedOnceItIsBack) {
  addresses.rows.clear();
  EXPECT_FALSE(watch.isReplaced());
  addresses.rows = {{9, kAddress, kMask, "eth1"}};
  EXPECT_TRUE(watch.isReplaced());
}

TEST_F(AdapterWatchTest, WithoutANameNoneIsWatched) {
  AdapterWatch any("", addresses);
  addresses.rows[0].index = 9;
  EXPECT_FALSE(any.isReplaced());
}

}  // namespace
}  // namespace omniset::test
