#include "link/timed_sessions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/link/link_fixture.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Notes each firing and then waits for its next time.
class Session {
 public:
  Session(char name, Micros deadline, std::string& log)
      : name_(name), deadline_(deadline), log_(log) {}
  ~Session() { log_ += '~'; }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  Micros deadline() const { return deadline_; }
  void timerFired(Micros now) {
    log_ += name_;
    deadline_ = now + 100;
  }
  void expectAt(Micros deadline) { deadline_ = deadline; }

 private:
  char name_;
  Micros deadline_;
  std::string& log_;
};

struct TimedSessionsTest : ::testing::Test {
  void add(const MacAddress& mac, char name, Micros deadline) {
    sessions.add(mac, std::make_unique<Session>(name, deadline, log));
  }

  std::string log;
  TimedSessions<Session> sessions;
};

TEST_F(TimedSessionsTest, DueTimersFireOnceEachInTheOrderOfTheAddresses) {
  add(kStrangerMac, 'c', 5);
  add(kTargetMac, 'b', 10);
  add(kInstallerMac, 'a', 11);
  sessions.fireDue(10);
  EXPECT_EQ(log, "bc");
  sessions.fireDue(11);
  EXPECT_EQ(log, "bca");
}

TEST_F(TimedSessionsTest, WaitIsUntilTheNearestDeadlineWithinItsLimits) {
  EXPECT_EQ(sessions.timeToNext(0, 1000), 1000);
  add(kTargetMac, 'b', 50);
  add(kInstallerMac, 'a', 70);
  EXPECT_EQ(sessions.timeToNext(10, 1000), 40);
  EXPECT_EQ(sessions.timeToNext(10, 30), 30);
  EXPECT_EQ(sessions.timeToNext(50, 1000), 1);
  EXPECT_EQ(sessions.timeToNext(500, 1000), 1);
}

TEST_F(TimedSessionsTest, DeadlineChangedByTheOwnerCounts) {
  add(kTargetMac, 'b', 50);
  EXPECT_TRUE(sessions.with(kTargetMac, [](Session& session) { session.expectAt(20); }));
  EXPECT_EQ(sessions.timeToNext(0, 1000), 20);
  sessions.forEach([](Session& session) { session.expectAt(30); });
  EXPECT_EQ(sessions.timeToNext(0, 1000), 30);
}

TEST_F(TimedSessionsTest, UnknownAddressHasNoSession) {
  add(kTargetMac, 'b', 50);
  EXPECT_EQ(sessions.find(kStrangerMac), nullptr);
  EXPECT_FALSE(sessions.remove(kStrangerMac));
  EXPECT_FALSE(sessions.with(kStrangerMac, [](Session&) { FAIL(); }));
}

TEST_F(TimedSessionsTest, RemovedSessionIsDestroyedWithItsTimer) {
  add(kTargetMac, 'b', 50);
  EXPECT_TRUE(sessions.remove(kTargetMac));
  EXPECT_EQ(log, "~");
  sessions.fireDue(100);
  EXPECT_EQ(log, "~");
  EXPECT_EQ(sessions.timeToNext(0, 1000), 1000);
}

TEST_F(TimedSessionsTest, AddingReplacesTheEarlierSessionOfThatAddress) {
  add(kTargetMac, 'b', 50);
  add(kTargetMac, 'n', 70);
  EXPECT_EQ(log, "~");
  sessions.fireDue(60);
  EXPECT_EQ(log, "~");
  sessions.fireDue(70);
  EXPECT_EQ(log, "~n");
}

TEST_F(TimedSessionsTest, ThousandSessionsKeepTheirOwnDeadlines) {
  for (int i = 0; i < 1000; ++i) {
    const MacAddress mac{
        {0x02, 0, 0, 0, static_cast<std::uint8_t>(i >> 8), static_cast<std::uint8_t>(i)}};
    add(mac, 'x', 1000 - i);
  }
  for (int now = 1; now <= 50; ++now) {
    sessions.fireDue(now);
    ASSERT_EQ(log.size(), static_cast<std::size_t>(now));
  }
}

}  // namespace
}  // namespace omniset::test
