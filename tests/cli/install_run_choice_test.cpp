// Which routers a run installs, and when it ends.

#include "install_run_fixture.h"

namespace omniset::test {

using InstallRunChoice = InstallRunTest;

constexpr const char* kUnseenText = "did not announce itself within 60 seconds";

TEST_F(InstallRunChoice, NamedRouterIsInstalledOnSightAndEndsTheRun) {
  options.choice = RouterChoice::kNamed;
  options.named = {targetMac(1)};
  PlayedTarget& target = addTarget(1);
  begin();
  target.announce();
  EXPECT_LT(finish(), 10 * kSecond);
  EXPECT_TRUE(events.contains(ok(1, kWaitingText)));
  EXPECT_EQ(run->exitCode(), kExitDone);
  EXPECT_EQ(target.filesTaken, 2);
}

TEST_F(InstallRunChoice, RouterThatIsNotNamedIsLeftAlone) {
  options.choice = RouterChoice::kNamed;
  options.named = {targetMac(1)};
  PlayedTarget& wanted = addTarget(1);
  PlayedTarget& other = addTarget(2);
  begin();
  other.announce();
  wanted.announce();
  finish();
  EXPECT_EQ(other.offersTaken, 0);
  EXPECT_EQ(run->outcome().started, 1u);
  EXPECT_EQ(run->exitCode(), kExitDone);
}

TEST_F(InstallRunChoice, NamedRouterThatStaysAwayFailsAfterTheWait) {
  options.choice = RouterChoice::kNamed;
  options.named = {targetMac(1), targetMac(2)};
  addTarget(1).announce();
  begin();
  const Micros took = finish();
  EXPECT_GE(took, 60 * kSecond);
  EXPECT_LT(took, 62 * kSecond);
  EXPECT_TRUE(events.contains(ok(1, kWaitingText)));
  EXPECT_TRUE(events.contains(failed(2, kUnseenText)));
  EXPECT_EQ(run->outcome().missing, 1u);
  EXPECT_EQ(run->exitCode(), kExitFailed);
}

TEST_F(InstallRunChoice, NoneOfTheNamedRoutersIsAStatusOfItsOwn) {
  options.choice = RouterChoice::kNamed;
  options.named = {targetMac(1), targetMac(2)};
  begin();
  finish();
  EXPECT_TRUE(events.contains(failed(1, kUnseenText)));
  EXPECT_TRUE(events.contains(failed(2, kUnseenText)));
  EXPECT_EQ(run->exitCode(), kExitNoRouter);
}

TEST_F(InstallRunChoice, NamedRouterThatComesAfterTheWaitIsTooLate) {
  options.choice = RouterChoice::kNamed;
  options.named = {targetMac(1), targetMac(2)};
  PlayedTarget& slow = addTarget(1);
  slow.obeys = PlayedTarget::Obeys::kOffer;
  PlayedTarget& late = addTarget(2);
  begin();
  slow.announce();
  turnsFor(61 * kSecond);
  ASSERT_FALSE(run->done());
  late.announce();
  slow.obeys = PlayedTarget::Obeys::kReboot;
  finish();
  EXPECT_EQ(late.offersTaken, 0);
  EXPECT_TRUE(events.contains(ok(1, kWaitingText)));
  EXPECT_TRUE(events.contains(failed(2, kUnseenText)));
}

TEST_F(InstallRunChoice, RouterNamedTwiceHasOneResult) {
  options.choice = RouterChoice::kNamed;
  options.named = {targetMac(1), targetMac(1)};
  addTarget(1).announce();
  begin();
  finish();
  EXPECT_EQ(run->outcome().started, 1u);
  EXPECT_TRUE(events.contains(ok(1, kWaitingText)));
}

TEST_F(InstallRunChoice, FirstTwoOfThreeAreInstalled) {
  options.choice = RouterChoice::kFirst;
  options.count = 2;
  addTarget(3).announce();
  addTarget(1).announce();
  addTarget(2).announce();
  begin();
  EXPECT_LT(finish(), 10 * kSecond);
  EXPECT_TRUE(events.contains(ok(3, kWaitingText)));
  EXPECT_TRUE(events.contains(ok(1, kWaitingText)));
  EXPECT_EQ(targets[2].offersTaken, 0);
  EXPECT_EQ(run->exitCode(), kExitDone);
}

TEST_F(InstallRunChoice, FewerThanTheFirstSoManyAreInstalledAndMissed) {
  options.choice = RouterChoice::kFirst;
  options.count = 3;
  addTarget(1).announce();
  begin();
  EXPECT_GE(finish(), 60 * kSecond);
  EXPECT_TRUE(events.contains(ok(1, kWaitingText)));
  EXPECT_EQ(run->outcome().succeeded, 1u);
  EXPECT_EQ(run->outcome().failed, 0u);
  EXPECT_EQ(run->outcome().missing, 2u);
  EXPECT_EQ(run->exitCode(), kExitFailed);
}

TEST_F(InstallRunChoice, NoRouterAtAllIsAStatusOfItsOwn) {
  options.choice = RouterChoice::kFirst;
  options.count = 1;
  begin();
  finish();
  EXPECT_TRUE(events.events.empty());
  EXPECT_EQ(run->exitCode(), kExitNoRouter);
}

TEST_F(InstallRunChoice, AllRoutersOfTheWholeWaitAreInstalled) {
  options.choice = RouterChoice::kAll;
  options.wait = 30 * kSecond;
  addTarget(1).announce();
  PlayedTarget& later = addTarget(2);
  PlayedTarget& tooLate = addTarget(3);
  begin();
  turnsFor(25 * kSecond);
  EXPECT_FALSE(run->done());
  later.announce();
  later.obeys = PlayedTarget::Obeys::kOffer;
  turnsFor(6 * kSecond);
  EXPECT_FALSE(run->done());
  tooLate.announce();
  later.obeys = PlayedTarget::Obeys::kReboot;
  finish();
  EXPECT_TRUE(events.contains(ok(1, kWaitingText)));
  EXPECT_TRUE(events.contains(ok(2, kWaitingText)));
  EXPECT_EQ(tooLate.offersTaken, 0);
  EXPECT_EQ(run->exitCode(), kExitDone);
}

TEST_F(InstallRunChoice, NoneOfAllIsAStatusOfItsOwn) {
  begin();
  finish();
  EXPECT_EQ(run->exitCode(), kExitNoRouter);
}

TEST_F(InstallRunChoice, RouterIsNeverStartedTwice) {
  options.wait = 120 * kSecond;
  options.reboot = true;
  PlayedTarget& target = addTarget(1);
  begin();
  target.announce();
  turnsFor(20 * kSecond);
  ASSERT_TRUE(events.contains(ok(1, kInstalledText)));
  target.announce();
  target.announce();
  finish();
  EXPECT_EQ(target.offersTaken, 1);
  EXPECT_EQ(run->outcome().started, 1u);
  EXPECT_EQ(run->exitCode(), kExitDone);
}

TEST_F(InstallRunChoice, PollAfterTheEndDoesNothing) {
  options.choice = RouterChoice::kFirst;
  options.count = 1;
  addTarget(1).announce();
  begin();
  finish();
  const std::size_t told = events.events.size();
  addTarget(2).announce();
  for (int turns = 0; turns < 5; ++turns) turn();
  EXPECT_EQ(events.events.size(), told);
}

}  // namespace omniset::test
