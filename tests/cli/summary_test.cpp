#include <gtest/gtest.h>

#include "cli/exit_status.h"
#include "cli/install_boot.h"
#include "cli/install_command.h"

namespace omniset::test {

namespace {

std::string summaryOf(InstallOutcome outcome) {
  return summary({}, outcome, "eth0");
}

}  // namespace

TEST(Summary, AllInstalled) {
  EXPECT_EQ(summaryOf({.started = 1, .succeeded = 1}), "1 router installed.");
  EXPECT_EQ(summaryOf({.started = 3, .succeeded = 3}), "3 routers installed.");
}

TEST(Summary, SomeFailed) {
  EXPECT_EQ(summaryOf({.started = 3, .succeeded = 1, .failed = 2}),
            "1 router installed, 2 failed.");
}

TEST(Summary, SomeStayedAway) {
  EXPECT_EQ(summaryOf({.started = 1, .succeeded = 1, .missing = 2}),
            "1 router installed. 2 routers did not appear within 60 seconds: check that all have "
            "booted the installer, or wait longer with --wait.");
}

TEST(Summary, NoneAppeared) {
  EXPECT_EQ(summaryOf({}),
            "No router announced itself within 60 seconds on eth0. Check that it has booted the "
            "installer and is on the same network, or wait longer with --wait.");
}

TEST(Summary, NoneAppearedThoughTheyCouldBoot) {
  InstallOptions options;
  options.bootAddress = 1;
  options.wait = 600 * kSecond;
  EXPECT_EQ(summary(options, {}, "eth0"),
            "No router announced itself within 600 seconds on eth0. Check that the PCs are set to "
            "boot from the network and are on the same network, or wait longer with --wait.");
}

TEST(Summary, NoneAppearedThoughOneHasBooted) {
  InstallOptions options;
  options.bootAddress = 1;
  options.wait = 600 * kSecond;
  EXPECT_EQ(summary(options, {}, "eth0", true),
            "No router announced itself within 600 seconds on eth0. Check what the screens of the "
            "PCs say that have asked to boot, or wait longer with --wait.");
}

TEST(Summary, CountsOneSecondAsOne) {
  InstallOptions options;
  options.wait = kSecond;
  EXPECT_TRUE(summary(options, {}, "eth0")
                  .starts_with("No router announced itself within 1 second on eth0."));
}

TEST(Summary, EndedEarly) {
  EXPECT_EQ(summaryOf({.started = 2, .succeeded = 1, .failed = 1, .abandoned = true}),
            "1 router installed, 1 failed; the run ended early.");
}

TEST(ExitCodeWithBoot, IsTheRunsWhileTheServiceWorks) {
  for (const int code : {kExitDone, kExitFailed, kExitNoRouter}) {
    EXPECT_EQ(exitCodeWithBoot(code, RouterChoice::kAll, false), code);
  }
}

TEST(ExitCodeWithBoot, FailedServiceIsAFailureUnlessEveryWantedRouterCame) {
  EXPECT_EQ(exitCodeWithBoot(kExitDone, RouterChoice::kFirst, true), kExitDone);
  EXPECT_EQ(exitCodeWithBoot(kExitDone, RouterChoice::kNamed, true), kExitDone);
  EXPECT_EQ(exitCodeWithBoot(kExitDone, RouterChoice::kAll, true), kExitFailed);
  EXPECT_EQ(exitCodeWithBoot(kExitNoRouter, RouterChoice::kFirst, true), kExitFailed);
  EXPECT_EQ(exitCodeWithBoot(kExitFailed, RouterChoice::kNamed, true), kExitFailed);
}

}  // namespace omniset::test
