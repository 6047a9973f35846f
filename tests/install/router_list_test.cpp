#include "install/router_list.h"

#include <gtest/gtest.h>

#include "tests/fakes/fake_clock.h"
#include "tests/install/fake_router_rows.h"

namespace omniset::test {

namespace {

const MacAddress kRouter1{{2, 0, 0, 0, 1, 1}};
const MacAddress kRouter2{{2, 0, 0, 0, 1, 2}};

struct RouterListTest : ::testing::Test {
  RouterRecord announced(const MacAddress& mac, const std::string& label = "rack 1") const {
    RouterRecord record;
    record.mac = mac;
    record.label = label;
    record.lastSeen = clock.now();
    return record;
  }
  void setStatus(const MacAddress& mac, RouterStatus status) {
    RouterRecord session;
    session.status = status;
    list.updateStatus(mac, session);
  }
  std::string statusOf(int row) const { return rows.at(row).texts[kStatusColumn]; }

  FakeClock clock;
  FakeRouterRows rows;
  RouterList list{rows, clock};
};

using Texts = std::array<std::string, 3>;

}  // namespace

TEST_F(RouterListTest, RouterIsShownWithLabelAddressAndReady) {
  list.addOrRefresh(announced(kRouter1));
  ASSERT_EQ(1u, rows.rows.size());
  EXPECT_EQ((Texts{"rack 1", "02:00:00:00:01:01", "Ready"}), rows.at(0).texts);
  EXPECT_EQ(0, rows.at(0).image);
}

TEST_F(RouterListTest, FixedDriveIsShownAsHardDisk) {
  RouterRecord drive = announced(kRouter1, "D:\\");
  drive.kind = kLocalDrive;
  drive.driveType = kFixedDrive;
  list.addOrRefresh(drive);
  EXPECT_EQ((Texts{"D:\\", "Hard disk", "Ready"}), rows.at(0).texts);
  EXPECT_EQ(3, rows.at(0).image);
}

TEST_F(RouterListTest, OtherDriveIsShownAsRemovableMedia) {
  RouterRecord drive = announced(kRouter1, "E:\\");
  drive.kind = kLocalDrive;
  drive.driveType = kRemovableDrive;
  list.addOrRefresh(drive);
  EXPECT_EQ((Texts{"E:\\", "Removable media", "Ready"}), rows.at(0).texts);
  EXPECT_EQ(4, rows.at(0).image);
}

TEST_F(RouterListTest, EachStatusHasItsText) {
  list.addOrRefresh(announced(kRouter1));
  setStatus(kRouter1, RouterStatus::kInstalling);
  EXPECT_EQ("Installing", statusOf(0));
  setStatus(kRouter1, RouterStatus::kWaitingReboot);
  EXPECT_EQ("Waiting reboot", statusOf(0));
  setStatus(kRouter1, RouterStatus::kFinished);
  EXPECT_EQ("OK", statusOf(0));
  setStatus(kRouter1, RouterStatus::kFailed);
  EXPECT_EQ("Failed", statusOf(0));
}

TEST_F(RouterListTest, StatusColumnIsRewrittenOnlyWhenTheCodeChanges) {
  list.addOrRefresh(announced(kRouter1));
  setStatus(kRouter1, RouterStatus::kInstalling);
  const int written = rows.textsSet;
  RouterRecord session;
  session.status = RouterStatus::kInstalling;
  session.statusText = "Transfering: system-2.9.7.bdl";
  session.bytesSent = 1452;
  list.updateStatus(kRouter1, session);
  EXPECT_EQ(written, rows.textsSet);
  EXPECT_EQ("Transfering: system-2.9.7.bdl", list.find(kRouter1)->statusText);
  EXPECT_EQ(1452, list.find(kRouter1)->bytesSent);
}

TEST_F(RouterListTest, StatusOfAnUnknownRouterChangesNothing) {
  setStatus(kRouter1, RouterStatus::kInstalling);
  EXPECT_EQ(0u, list.count());
}

TEST_F(RouterListTest, AnnouncingAgainKeepsAReadyRowAndItsEdits) {
  list.addOrRefresh(announced(kRouter1));
  list.find(kRouter1)->netmaskLength = 24;
  clock.advance(3 * kSecond);
  list.addOrRefresh(announced(kRouter1, "renamed"));
  EXPECT_EQ(1u, list.count());
  EXPECT_EQ("rack 1", rows.at(0).texts[kLabelColumn]);
  EXPECT_EQ(24, list.find(kRouter1)->netmaskLength);
  EXPECT_EQ(clock.now(), list.find(kRouter1)->lastSeen);
}

TEST_F(RouterListTest, SilentReadyRouterDisappearsAfterAMinute) {
  list.addOrRefresh(announced(kRouter1));
  clock.advance(60 * kSecond);
  list.age();
  EXPECT_EQ(1u, list.count());
  clock.advance(1);
  list.age();
  EXPECT_EQ(0u, list.count());
  EXPECT_TRUE(rows.rows.empty());
}

TEST_F(RouterListTest, RouterThatAnnouncesItselfEveryFewSecondsStays) {
  list.addOrRefresh(announced(kRouter1));
  for (int i = 0; i < 40; ++i) {
    clock.advance(5 * kSecond);
    list.addOrRefresh(announced(kRouter1));
    list.age();
  }
  EXPECT_EQ(1u, list.count());
}

TEST_F(RouterListTest, OnlyReadyRoutersAreAgedOut) {
  for (const RouterStatus status : {RouterStatus::kInstalling, RouterStatus::kWaitingReboot,
                                    RouterStatus::kFinished, RouterStatus::kFailed}) {
    list.addOrRefresh(announced(kRouter1));
    setStatus(kRouter1, status);
    clock.advance(1000 * kSecond);
    list.age();
    EXPECT_EQ(1u, list.count());
    list.remove(kRouter1);
  }
}

TEST_F(RouterListTest, DrivesAreNeverAgedOut) {
  RouterRecord drive = announced(kRouter1);
  drive.kind = kLocalDrive;
  list.addOrRefresh(drive);
  clock.advance(1000 * kSecond);
  list.age();
  EXPECT_EQ(1u, list.count());
}

TEST_F(RouterListTest, RouterThatStartsOverGetsAFreshReadyRowAtTheEnd) {
  for (const RouterStatus status : {RouterStatus::kInstalling, RouterStatus::kWaitingReboot,
                                    RouterStatus::kFinished, RouterStatus::kFailed}) {
    list.addOrRefresh(announced(kRouter1));
    list.addOrRefresh(announced(kRouter2, "rack 2"));
    setStatus(kRouter1, status);
    clock.advance(10 * kMillisecond);
    list.addOrRefresh(announced(kRouter1, "again"));
    ASSERT_EQ(2u, rows.rows.size());
    EXPECT_EQ("rack 2", rows.at(0).texts[kLabelColumn]);
    EXPECT_EQ((Texts{"again", "02:00:00:00:01:01", "Ready"}), rows.at(1).texts);
    EXPECT_EQ(RouterStatus::kReady, list.find(kRouter1)->status);
    list.remove(kRouter1);
    list.remove(kRouter2);
  }
}

TEST_F(RouterListTest, InstallingRouterSeenJustNowKeepsItsRow) {
  list.addOrRefresh(announced(kRouter1));
  setStatus(kRouter1, RouterStatus::kInstalling);
  clock.advance(10 * kMillisecond - 1);
  list.addOrRefresh(announced(kRouter1));
  EXPECT_EQ("Installing", statusOf(0));
}

TEST_F(RouterListTest, FreshRowIsSelectedIfTheOldOneWas) {
  list.addOrRefresh(announced(kRouter1));
  list.addOrRefresh(announced(kRouter2));
  rows.select(0);
  setStatus(kRouter1, RouterStatus::kFailed);
  list.addOrRefresh(announced(kRouter1));
  EXPECT_EQ(1, rows.selected());
  EXPECT_EQ(kRouter1, list.selected()->mac);
}

TEST_F(RouterListTest, FreshRowOfAnotherLeavesTheSelection) {
  list.addOrRefresh(announced(kRouter1));
  list.addOrRefresh(announced(kRouter2));
  rows.select(1);
  setStatus(kRouter1, RouterStatus::kFailed);
  list.addOrRefresh(announced(kRouter1));
  EXPECT_EQ(kRouter2, list.selected()->mac);
}

TEST_F(RouterListTest, SelectionFollowsTheRowsThatAreRemoved) {
  list.addOrRefresh(announced(kRouter1));
  list.addOrRefresh(announced(kRouter2));
  EXPECT_EQ(nullptr, list.selected());
  rows.select(1);
  list.remove(kRouter1);
  EXPECT_EQ(kRouter2, list.selected()->mac);
  list.remove(kRouter2);
  EXPECT_EQ(nullptr, list.selected());
}

// Whoever is told of the row's end by the list view must not be given another row's record.
TEST_F(RouterListTest, RecordIsStillThereWhileItsRowGoes) {
  list.addOrRefresh(announced(kRouter1));
  list.addOrRefresh(announced(kRouter2));
  rows.select(0);
  MacAddress seen;
  rows.onRemove = [&] { seen = list.selected()->mac; };
  list.remove(kRouter1);
  EXPECT_EQ(kRouter1, seen);
}

TEST_F(RouterListTest, ReleasedRouterIsReadyAndLivesAnotherMinute) {
  list.addOrRefresh(announced(kRouter1));
  RouterRecord session;
  session.status = RouterStatus::kInstalling;
  session.statusText = "Installing router...";
  session.bytesSent = 5;
  list.updateStatus(kRouter1, session);
  clock.advance(300 * kSecond);
  list.release(kRouter1);
  list.age();
  EXPECT_EQ("Ready", statusOf(0));
  EXPECT_EQ("", list.find(kRouter1)->statusText);
  EXPECT_EQ(0, list.find(kRouter1)->bytesSent);
}

TEST_F(RouterListTest, FloodOfInventedRoutersIsBounded) {
  for (std::size_t i = 0; i < RouterList::kMostRows + 10; ++i) {
    MacAddress mac{{2, 0, 0, 0, static_cast<std::uint8_t>(i >> 8), static_cast<std::uint8_t>(i)}};
    list.addOrRefresh(announced(mac));
  }
  EXPECT_EQ(RouterList::kMostRows, list.count());
  EXPECT_EQ(RouterList::kMostRows, rows.rows.size());
}

}  // namespace omniset::test
