// What becomes of the routers that a run installs.

#include "core/error.h"
#include "install_run_fixture.h"

namespace omniset::test {

using InstallRunResult = InstallRunTest;
using Obeys = PlayedTarget::Obeys;

TEST_F(InstallRunResult, EventsOfARouterEndWithItsResult) {
  options.choice = RouterChoice::kFirst;
  options.count = 1;
  options.reboot = true;
  addTarget(1, "lab router").announce();
  begin();
  finish();
  const std::string mac = targetMac(1).text();
  EXPECT_EQ(events.events.front(), "router " + mac + " lab router");
  EXPECT_EQ(events.events[1], "status " + mac + " Sending offer...");
  EXPECT_EQ(events.events.back(), ok(1, kInstalledText));
  EXPECT_TRUE(events.contains("status " + mac + " " + kInstalledText));
  EXPECT_EQ(events.states.back().status, RouterStatus::kFinished);
  EXPECT_EQ(events.states.back().label, "lab router");
}

TEST_F(InstallRunResult, WithoutRebootTheRouterIsLeftWaiting) {
  addTarget(1).announce();
  begin();
  finish();
  EXPECT_TRUE(events.contains(ok(1, kWaitingText)));
  EXPECT_EQ(installer.access().record(targetMac(1))->status, RouterStatus::kWaitingReboot);
}

TEST_F(InstallRunResult, KeyPressedAtTheRouterEndsARunThatWaitsForTheReboot) {
  options.choice = RouterChoice::kFirst;
  options.count = 1;
  options.reboot = true;
  PlayedTarget& target = addTarget(1);
  target.obeys = Obeys::kFiles;
  begin();
  target.announce();
  turnsFor(5 * kSecond);
  ASSERT_FALSE(run->done());
  target.pressKey();
  finish();
  EXPECT_TRUE(events.contains(ok(1, kInstalledText)));
}

TEST_F(InstallRunResult, RebootThatIsNeverConfirmedIsNoFailure) {
  options.choice = RouterChoice::kFirst;
  options.count = 1;
  options.reboot = true;
  PlayedTarget& target = addTarget(1);
  target.obeys = Obeys::kFiles;
  begin();
  target.announce();
  EXPECT_GE(finish(), 30 * kSecond);
  EXPECT_TRUE(events.contains(ok(1, "No response, router must have been already rebooted")));
  EXPECT_EQ(run->exitCode(), kExitDone);
}

TEST_F(InstallRunResult, RouterThatNeverAnswersFails) {
  options.choice = RouterChoice::kFirst;
  options.count = 1;
  PlayedTarget& target = addTarget(1);
  target.obeys = Obeys::kNothing;
  begin();
  target.announce();
  EXPECT_GE(finish(), 60 * kSecond);
  EXPECT_TRUE(events.contains(failed(1, "Installation failed: No response from router, timeout")));
  EXPECT_EQ(run->exitCode(), kExitFailed);
}

TEST_F(InstallRunResult, FailureOfOneRouterLeavesTheOthersAlone) {
  options.choice = RouterChoice::kNamed;
  options.named = {targetMac(1), targetMac(2)};
  PlayedTarget& silentTarget = addTarget(1);
  silentTarget.obeys = Obeys::kNothing;
  silentTarget.announce();
  addTarget(2).announce();
  begin();
  finish();
  EXPECT_TRUE(events.contains(ok(2, kWaitingText)));
  EXPECT_EQ(run->outcome().succeeded, 1u);
  EXPECT_EQ(run->outcome().failed, 1u);
  EXPECT_EQ(run->exitCode(), kExitFailed);
}

TEST_F(InstallRunResult, RouterThatStartsOverDuringTheInstallationFails) {
  options.wait = 20 * kSecond;
  PlayedTarget& target = addTarget(1);
  target.obeys = Obeys::kOffer;
  begin();
  target.announce();
  turnsFor(6 * kSecond);
  target.announce();
  finish();
  EXPECT_TRUE(events.contains(
      failed(1, "Installation failed: the router started over before everything was sent")));
  EXPECT_EQ(target.offersTaken, 1);
  EXPECT_EQ(run->exitCode(), kExitFailed);
}

TEST_F(InstallRunResult, RouterThatStartsOverInsteadOfConfirmingTheRebootFailsWithItsOwnText) {
  options.choice = RouterChoice::kFirst;
  options.count = 1;
  options.reboot = true;
  PlayedTarget& target = addTarget(1);
  target.obeys = Obeys::kFiles;
  begin();
  target.announce();
  turnsFor(8 * kSecond);
  target.announce();
  finish();
  EXPECT_TRUE(events.contains(failed(
      1, "The router started over before it confirmed the reboot; everything had been sent")));
}

TEST_F(InstallRunResult, UnreadablePackageFailsWithTheSystemsReason) {
  options.choice = RouterChoice::kFirst;
  options.count = 1;
  options.request.packageFiles = {"gone.bdl"};
  addTarget(1).announce();
  begin();
  finish();
  EXPECT_TRUE(
      events.events.back().starts_with(failed(1, "Installation failed: _open() package failed: ")));
}

class NoTempFiles : public TempFiles {
 public:
  std::string create(const char*) override { throw Error("GetTempFileName"); }
};

TEST_F(InstallRunResult, InstallationThatCannotBeStartedFails) {
  NoTempFiles none;
  RouterInstaller poor(
      0, InstallerServices{interfaces, std::make_unique<FakeUdpSocket>(network), clock, none});
  options.choice = RouterChoice::kFirst;
  options.count = 1;
  run = std::make_unique<InstallRun>(options, poor, clock, events);
  addTarget(1).announce();
  poor.step();
  run->poll();
  EXPECT_TRUE(run->done());
  EXPECT_TRUE(
      events.events.back().starts_with(failed(1, "Installation failed: GetTempFileName: ")));
  EXPECT_EQ(run->exitCode(), kExitFailed);
}

TEST_F(InstallRunResult, BytesAreToldAtMostFiveTimesASecondAndNeverBeyondTheTotal) {
  options.choice = RouterChoice::kFirst;
  options.count = 1;
  options.totalBytes = 15'000;
  addTarget(1).announce();
  begin();
  finish();
  Micros last = 0;
  for (const RouterState& state : events.states) {
    EXPECT_LE(state.bytes, 15'000);
    EXPECT_EQ(state.total, 15'000);
    EXPECT_GE(state.bytes, last);
    last = state.bytes;
  }
  EXPECT_EQ(last, 15'000);
  // The whole transfer takes next to no simulated time.
  EXPECT_LE(events.states.size(), 8u);
}

TEST_F(InstallRunResult, BytesAreToldWhileTheyMove) {
  options.choice = RouterChoice::kFirst;
  options.count = 1;
  addTarget(1).announce();
  begin();
  while (!run->done()) {
    turn();
    clock.advance(50 * kMillisecond);
  }
  int onlyBytes = 0;
  for (std::size_t i = 1; i < events.states.size(); ++i) {
    if (events.states[i].text == events.states[i - 1].text) ++onlyBytes;
  }
  // 14 chunks at 50 ms each.
  EXPECT_GE(onlyBytes, 2);
  EXPECT_LE(onlyBytes, 5);
}

TEST_F(InstallRunResult, InterruptionEndsTheSessionsAndTheirFiles) {
  options.choice = RouterChoice::kNamed;
  options.named = {targetMac(1), targetMac(2), targetMac(3)};
  addTarget(1).announce();
  PlayedTarget& unfinished = addTarget(2);
  unfinished.obeys = Obeys::kOffer;
  unfinished.announce();
  begin();
  turnsFor(10 * kSecond);
  EXPECT_EQ(temp.names().size(), 2u);
  run->interrupt();
  EXPECT_TRUE(run->done());
  EXPECT_TRUE(events.contains(ok(1, kWaitingText)));
  EXPECT_TRUE(events.contains(failed(2, "interrupted")));
  EXPECT_TRUE(events.contains(failed(3, "interrupted")));
  EXPECT_EQ(installer.access().record(targetMac(2)), nullptr);
  EXPECT_EQ(run->exitCode(), kExitFailed);
  EXPECT_TRUE(run->outcome().abandoned);
}

TEST_F(InstallRunResult, InterruptionBeforeAnyRouterIsAFailure) {
  begin();
  turn();
  run->interrupt();
  EXPECT_EQ(run->exitCode(), kExitFailed);
}

TEST_F(InstallRunResult, AbandonedRunGivesItsReason) {
  PlayedTarget& target = addTarget(1);
  target.obeys = Obeys::kNothing;
  begin();
  target.announce();
  turnsFor(2 * kSecond);
  run->abandon("the network is gone");
  EXPECT_TRUE(events.contains(failed(1, "the network is gone")));
}

TEST_F(InstallRunResult, InterruptionAfterTheEndChangesNothing) {
  options.choice = RouterChoice::kFirst;
  options.count = 1;
  addTarget(1).announce();
  begin();
  finish();
  run->interrupt();
  EXPECT_EQ(run->exitCode(), kExitDone);
  EXPECT_FALSE(run->outcome().abandoned);
}

TEST_F(InstallRunResult, ManyRoutersAreInstalledAtOnce) {
  options.choice = RouterChoice::kFirst;
  options.count = 100;
  options.reboot = true;
  for (std::uint8_t number = 1; number <= 100; ++number) addTarget(number).announce();
  begin();
  EXPECT_LT(finish(), 20 * kSecond);
  EXPECT_EQ(run->outcome().succeeded, 100u);
  EXPECT_EQ(run->exitCode(), kExitDone);
}

}  // namespace omniset::test
