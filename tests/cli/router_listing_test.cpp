#include "cli/router_listing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace omniset::test {

namespace {

RouterRecord router(std::uint8_t number, const std::string& label) {
  RouterRecord record;
  record.mac = {{2, 0, 0, 0, 1, number}};
  record.label = label;
  return record;
}

}  // namespace

TEST(RouterListing, ListsEachRouterOnce) {
  std::ostringstream out;
  RouterListing listing(out, false);
  EXPECT_TRUE(listing.isEmpty());
  for (int i = 0; i < 3; ++i) {
    listing.announced(router(1, "one"));
    listing.announced(router(2, "two"));
  }
  EXPECT_FALSE(listing.isEmpty());
  EXPECT_EQ(out.str(), "02:00:00:00:01:01  one\n02:00:00:00:01:02  two\n");
}

TEST(RouterListing, FloodOfInventedRoutersIsCutOff) {
  std::ostringstream out;
  RouterListing listing(out, false);
  for (int i = 0; i < 6000; ++i) {
    RouterRecord record = router(static_cast<std::uint8_t>(i), "x");
    record.mac.bytes[4] = static_cast<std::uint8_t>(i >> 8);
    listing.announced(record);
  }
  const std::string text = out.str();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 4096);
}

TEST(RouterListing, ListsARouterAgainWhenItsLabelChanges) {
  std::ostringstream out;
  RouterListing listing(out, true);
  listing.announced(router(1, "one"));
  listing.announced(router(1, "uno"));
  listing.announced(router(1, "uno"));
  EXPECT_EQ(out.str(),
            "{\"mac\":\"02:00:00:00:01:01\",\"label\":\"one\"}\n"
            "{\"mac\":\"02:00:00:00:01:01\",\"label\":\"uno\"}\n");
}

TEST(RouterListing, ShowsLabelsWithoutControlCharacters) {
  std::ostringstream out;
  RouterListing(out, false).announced(router(1, "\x1b[2J\xFF"));
  EXPECT_EQ(out.str(), "02:00:00:00:01:01  ?[2J?\n");
}

}  // namespace omniset::test
