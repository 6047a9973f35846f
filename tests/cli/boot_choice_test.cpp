#include "cli/boot_choice.h"

#include <gtest/gtest.h>

#include <thread>

#include "tests/fakes/fake_clock.h"

namespace omniset::test {

namespace {

MacAddress pc(std::uint8_t number) {
  return {{2, 0, 0, 0, 1, number}};
}

constexpr Micros kWait = 600 * kSecond;

class BootChoiceTest : public testing::Test {
 protected:
  BootChoice make(RouterChoice choice, const std::vector<MacAddress>& named, std::size_t count) {
    return {choice, named, count, clock_, clock_.now() + kWait};
  }

  FakeClock clock_;
};

}  // namespace

TEST_F(BootChoiceTest, EverybodyBootsWhenAllAreWanted) {
  BootChoice choice = make(RouterChoice::kAll, {}, 0);
  EXPECT_EQ(choice.refusal(pc(1)), "");
  EXPECT_EQ(choice.refusal(pc(2)), "");
}

TEST_F(BootChoiceTest, InstalledPcIsNotBootedAgain) {
  BootChoice choice = make(RouterChoice::kAll, {}, 0);
  choice.routerSeen(pc(1), "");
  EXPECT_EQ(choice.refusal(pc(1)), "");
  choice.routerDone(pc(1), true, "finished");
  EXPECT_EQ(choice.refusal(pc(1)), "it has been installed");
  EXPECT_EQ(choice.refusal(pc(2)), "");
}

TEST_F(BootChoiceTest, FailedPcMayBootAgain) {
  BootChoice choice = make(RouterChoice::kFirst, {}, 1);
  choice.routerSeen(pc(1), "");
  choice.routerDone(pc(1), false, "Connection timeout");
  EXPECT_EQ(choice.refusal(pc(1)), "");
}

TEST_F(BootChoiceTest, OnlyNamedPcsBoot) {
  BootChoice choice = make(RouterChoice::kNamed, {pc(1), pc(2)}, 0);
  EXPECT_EQ(choice.refusal(pc(1)), "");
  EXPECT_EQ(choice.refusal(pc(2)), "");
  EXPECT_EQ(choice.refusal(pc(3)), "it is not among the routers of --router");
  choice.routerDone(pc(1), true, "finished");
  EXPECT_EQ(choice.refusal(pc(1)), "it has been installed");
}

TEST_F(BootChoiceTest, OnceTheFirstHaveBegunOnlyTheyBoot) {
  BootChoice choice = make(RouterChoice::kFirst, {}, 2);
  choice.routerSeen(pc(1), "");
  EXPECT_EQ(choice.refusal(pc(2)), "");
  choice.routerSeen(pc(2), "");
  EXPECT_EQ(choice.refusal(pc(3)), "as many routers as --first asks for have begun");
  EXPECT_EQ(choice.refusal(pc(1)), "");
  EXPECT_EQ(choice.refusal(pc(2)), "");
  choice.routerDone(pc(2), true, "finished");
  EXPECT_EQ(choice.refusal(pc(2)), "it has been installed");
}

TEST_F(BootChoiceTest, PcsThatAreBootingCountToo) {
  BootChoice choice = make(RouterChoice::kFirst, {}, 2);
  EXPECT_EQ(choice.refusal(pc(1)), "");
  EXPECT_EQ(choice.refusal(pc(2)), "");
  EXPECT_EQ(choice.refusal(pc(3)), "as many routers as --first asks for have begun");
  EXPECT_EQ(choice.refusal(pc(1)), "");
  choice.routerSeen(pc(1), "");
  EXPECT_EQ(choice.refusal(pc(3)), "as many routers as --first asks for have begun");
}

TEST_F(BootChoiceTest, APcThatBootedAndThenAnnouncedItselfCountsOnce) {
  BootChoice choice = make(RouterChoice::kFirst, {}, 2);
  EXPECT_EQ(choice.refusal(pc(1)), "");
  choice.routerSeen(pc(1), "");
  EXPECT_EQ(choice.refusal(pc(2)), "");
  EXPECT_NE(choice.refusal(pc(3)), "");
}

TEST_F(BootChoiceTest, APcThatDoesNotArriveMakesRoomForAnother) {
  BootChoice choice = make(RouterChoice::kFirst, {}, 1);
  EXPECT_EQ(choice.refusal(pc(1)), "");
  clock_.advance(BootChoice::kLongestBoot - 1);
  EXPECT_NE(choice.refusal(pc(2)), "");
  clock_.advance(1);
  EXPECT_EQ(choice.refusal(pc(2)), "");
  EXPECT_NE(choice.refusal(pc(1)), "");
}

TEST_F(BootChoiceTest, AfterTheWaitOnlyThoseThatHaveBegunBoot) {
  BootChoice choice = make(RouterChoice::kAll, {}, 0);
  choice.routerSeen(pc(1), "");
  clock_.advance(kWait);
  EXPECT_EQ(choice.refusal(pc(1)), "");
  EXPECT_EQ(choice.refusal(pc(2)), "the time that --wait gives is over");
}

TEST_F(BootChoiceTest, AnotherThreadMayAskWhileTheRunGoesOn) {
  BootChoice choice = make(RouterChoice::kFirst, {}, 200);
  std::size_t refusals = 0;
  std::thread asking([&] {
    for (int i = 0; i < 20'000; ++i) {
      if (!choice.refusal(pc(static_cast<std::uint8_t>(i))).empty()) ++refusals;
    }
  });
  for (int i = 0; i < 200; ++i) {
    const MacAddress mac = pc(static_cast<std::uint8_t>(i));
    choice.routerSeen(mac, "");
    choice.routerDone(mac, true, "finished");
  }
  asking.join();
  EXPECT_LE(refusals, 20'000u);
  for (int i = 0; i < 256; ++i) {
    EXPECT_NE(choice.refusal(pc(static_cast<std::uint8_t>(i))), "") << i;
  }
}

}  // namespace omniset::test
