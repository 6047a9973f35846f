#include "boot/boot_turns.h"

#include <gmock/gmock.h>

#include "tests/boot/boot_requests.h"

namespace omniset::test {
namespace {

MacAddress macOf(std::uint8_t number) {
  return {{2, 0, 0, 0, 3, number}};
}

class BootTurnsTest : public testing::Test {
 protected:
  void add(std::uint8_t client, std::uint8_t xid = 0) {
    Bytes request = pxeRequest(macOf(client));
    request[4] = xid;
    turns_.add(received(request));
  }
  // The number of the client whose request is next, and where its xid begins; -1 for none.
  int take(Micros now = 0) {
    const auto request = turns_.take(now);
    if (!request) return -1;
    xid_ = request->bytes[4];
    return clientMac(*request).bytes[5];
  }

  BootTurns turns_;
  int xid_ = 0;
};

TEST_F(BootTurnsTest, ClientsAreTakenInTheOrderInWhichTheyAsked) {
  EXPECT_TRUE(turns_.empty());
  for (const std::uint8_t client : Bytes{3, 1, 2}) add(client);
  EXPECT_TRUE(turns_.has(macOf(1)));
  EXPECT_EQ(take(), 3);
  EXPECT_EQ(take(), 1);
  EXPECT_FALSE(turns_.has(macOf(1)));
  EXPECT_EQ(take(), 2);
  EXPECT_EQ(take(), -1);
}

TEST_F(BootTurnsTest, OfAClientTheLatestRequestCountsInThePlaceOfItsFirst) {
  add(1, 10);
  add(2, 20);
  add(1, 11);
  EXPECT_EQ(take(), 1);
  EXPECT_EQ(xid_, 11);
  EXPECT_EQ(take(), 2);
  EXPECT_EQ(take(), -1);
}

TEST_F(BootTurnsTest, TheClientWhoseTurnItIsGoesFirstWhenItAsksAgain) {
  add(1);
  EXPECT_EQ(take(0), 1);
  add(2);
  add(1);
  EXPECT_EQ(take(kSecond), 1);
  EXPECT_EQ(take(kSecond), 2);
}

TEST_F(BootTurnsTest, AfterTwentySecondsItGoesBehindTheOthers) {
  add(1);
  EXPECT_EQ(take(0), 1);
  add(1);
  add(2);
  EXPECT_EQ(take(BootTurns::kPatience - 1), 1);
  add(1);
  EXPECT_EQ(take(BootTurns::kPatience), 2);
  EXPECT_EQ(take(BootTurns::kPatience), 1);
}

TEST_F(BootTurnsTest, AClientThatIsAloneMayAskForEver) {
  for (int i = 0; i < 100; ++i) {
    add(1);
    EXPECT_EQ(take(i * 10 * kSecond), 1);
  }
}

TEST_F(BootTurnsTest, ATurnOfAnotherBeginsTheTimeAnew) {
  add(1);
  EXPECT_EQ(take(0), 1);
  add(2);
  EXPECT_EQ(take(kSecond), 2);
  add(1);
  add(2);
  EXPECT_EQ(take(BootTurns::kPatience), 2);
}

TEST_F(BootTurnsTest, AnEndedTurnIsNoReasonToGoFirst) {
  add(1);
  EXPECT_EQ(take(0), 1);
  turns_.endTurn();
  add(2);
  add(1);
  EXPECT_EQ(take(kSecond), 2);
}

TEST_F(BootTurnsTest, RequestsOfTooManyClientsAreForgotten) {
  for (std::size_t i = 0; i < BootTurns::kMostClients + 1; ++i) {
    add(static_cast<std::uint8_t>(i));
  }
  std::size_t taken = 0;
  while (take() >= 0) ++taken;
  EXPECT_EQ(taken, BootTurns::kMostClients);
  EXPECT_FALSE(turns_.has(macOf(BootTurns::kMostClients)));
}

TEST_F(BootTurnsTest, ClearedNobodyWaits) {
  add(1);
  turns_.clear();
  EXPECT_EQ(take(), -1);
}

}  // namespace
}  // namespace omniset::test
