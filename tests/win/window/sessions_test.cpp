// Installations that do not run straight through: cancelled, failed, begun again.
#include <gmock/gmock.h>

#include "tests/win/window/window_test.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

constexpr std::size_t kLargePackage = 8'000'000;  // takes seconds to send
constexpr Milliseconds kInstallationLimit{40'000};

class Sessions : public WindowTest {
 protected:
  void installAndFreezeWhileSending() {
    writePackages(packageFolder(), {{"large", kSampleVersion, "A lot", {}, kLargePackage, 9}});
    startWithRouter();
    window().toggle("large");
    window().click(IDC_INSTALL);
    waitUntil("some of the package is sent", [&] { return window().progress(IDC_PROGRESS) > 5; });
    freezeTarget();
  }

  void installWithSilentRouter() {
    startWithRouter();
    freezeTarget();
    window().toggle("system");
    window().click(IDC_INSTALL);
    awaitStatus("Installing");
    window().settle();
  }
};

TEST_F(Sessions, ShowWhatIsSentAndHowFarItIs) {
  installAndFreezeWhileSending();
  EXPECT_EQ(window().text(IDC_STATUS_LINE), "Transfering: large-2.9.7.bdl");
  EXPECT_LT(window().progress(IDC_PROGRESS), 100);
  EXPECT_EQ(routers().row(rowOf()).texts.at(kStatusColumn), "Installing");
}

TEST_F(Sessions, LeaveNothingToChangeButTheCancelButton) {
  installWithSilentRouter();
  window().awaitText(IDC_STATUS_LINE, "Sending offer...");
  EXPECT_TRUE(window().isEnabled(IDC_CANCEL));
  for (const int id : {IDC_INSTALL, IDC_KEEP_CONFIGURATION, IDC_BAUD_RATE, IDC_USE_SCRIPT,
                       IDC_CHOOSE_SCRIPT, IDC_SELECT_ALL, IDC_SELECT_NONE}) {
    EXPECT_FALSE(window().isEnabled(id)) << "control " << id;
  }
  for (const int id : {IDC_ADDRESS, IDC_NETMASK, IDC_GATEWAY, IDC_SCRIPT_FILE}) {
    EXPECT_FALSE(window().isWritable(id)) << "control " << id;
  }
}

// The installation fails on this side, so the router goes on announcing itself every second.
TEST_F(Sessions, CorrectionsOfAFailureOnThisSideStay) {
  startWithRouter();
  failForWantOfAScript();
  writeBytes(path("corrected.rsc"), "/log info corrected\n");
  window().type(IDC_SCRIPT_FILE, path("corrected.rsc"));
  awaitStatus("Ready");
  window().awaitText(IDC_STATUS_LINE, "Installation failed: Could not open script");
  EXPECT_EQ(window().text(IDC_SCRIPT_FILE), path("corrected.rsc"));
  window().awaitEnabled(IDC_INSTALL);
  window().click(IDC_INSTALL);
  awaitStatus("Waiting reboot", kTargetAddress, kInstallationLimit);
  EXPECT_EQ(receivedScript(), "/log info corrected\n");
}

TEST_F(Sessions, CancelledWhileOfferingTheRouterIsReadyAgain) {
  installWithSilentRouter();
  window().click(IDC_CANCEL);
  awaitStatus("Ready");
  window().awaitEnabled(IDC_INSTALL);
  EXPECT_FALSE(window().isEnabled(IDC_CANCEL));
  EXPECT_EQ(packages().marked(), Texts{"system"});
}

TEST_F(Sessions, CancelledWhileSendingTheRouterIsReadyAgain) {
  installAndFreezeWhileSending();
  window().click(IDC_CANCEL);
  awaitStatus("Ready");
  window().awaitEnabled(IDC_INSTALL);
  waitUntil("the progress is gone", [&] { return window().progress(IDC_PROGRESS) == 0; });
}

TEST_F(Sessions, CancelledBeforeItsRebootTheRouterIsReadyAgain) {
  startWithRouter();
  window().toggle("system");
  window().click(IDC_INSTALL);
  awaitStatus("Waiting reboot", kTargetAddress, kInstallationLimit);
  window().click(IDC_CANCEL);
  awaitStatus("Ready");
  window().awaitText(IDC_INSTALL, "Install");
}

TEST_F(Sessions, AFinishedRouterThatAnnouncesItselfCanBeInstalledAgain) {
  startWithRouter();
  window().toggle("system");
  window().click(IDC_INSTALL);
  awaitStatus("Waiting reboot", kTargetAddress, kInstallationLimit);
  window().awaitText(IDC_INSTALL, "Reboot");
  window().click(IDC_INSTALL);
  awaitStatus("OK");
  window().awaitEnabled(IDC_INSTALL, false);
  stopTarget();
  startTarget();
  awaitStatus("Ready");
  window().awaitEnabled(IDC_INSTALL);
  window().click(IDC_INSTALL);
  awaitStatus("Waiting reboot", kTargetAddress, kInstallationLimit);
  expectReceived({"system-2.9.7.bdl"});
}

TEST_F(Sessions, ARouterThatStartsOverIsReadyAndCanBeInstalled) {
  installAndFreezeWhileSending();
  stopTarget();
  startTarget();
  awaitStatus("Ready");
  selectReadyRouter();
  window().awaitEnabled(IDC_INSTALL);
  EXPECT_THAT(packages().marked(), ElementsAre("large"));
  window().click(IDC_INSTALL);
  awaitStatus("Waiting reboot", kTargetAddress, kInstallationLimit);
  expectReceived({"large-2.9.7.bdl"});
}

TEST_F(Sessions, AFailedRouterThatAnnouncesItselfIsReadyAndStillSelected) {
  startWithRouter();
  freezeTarget();
  failForWantOfAScript();
  thawTarget();
  awaitStatus("Ready");
  EXPECT_EQ(routers().selectedRow(), rowOf());
  window().awaitEnabled(IDC_INSTALL);
}

TEST_F(Sessions, ARouterThatFailedCanBeInstalledOnceItIsReadyAgain) {
  startWithRouter();
  freezeTarget();
  failForWantOfAScript();
  thawTarget();
  awaitStatus("Ready");
  window().awaitEnabled(IDC_INSTALL);
  window().click(IDC_USE_SCRIPT);
  window().awaitEnabled(IDC_SCRIPT_FILE, false);
  EXPECT_THAT(packages().marked(), ElementsAre("system"));
  window().click(IDC_INSTALL);
  awaitStatus("Waiting reboot", kTargetAddress, kInstallationLimit);
  expectReceived({"system-2.9.7.bdl"});
}

}  // namespace
}  // namespace omniset::test
