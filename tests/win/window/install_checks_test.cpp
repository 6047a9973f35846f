// What the window asks or refuses before it starts an installation.
#include <gmock/gmock.h>

#include "tests/win/window/window_test.h"

namespace omniset::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

// A router that is silent: an installation that starts goes no further than its offer.
class InstallChecks : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    startWithRouter();
    freezeTarget();
  }

  void expectNothingStarted() {
    window().settle();
    EXPECT_EQ(routers().row(rowOf()).texts.at(kStatusColumn), "Ready");
    EXPECT_THAT(window().process().outputLines(), Not(::testing::Contains(HasSubstr("script:"))));
    EXPECT_THAT(window().lines(IDC_SETS), IsEmpty());
  }

  void expectStarted() {
    awaitStatus("Installing");
    EXPECT_TRUE(window().hasOnlyMainWindow());
  }
};

TEST_F(InstallChecks, NoPackageIsRefused) {
  window().click(IDC_INSTALL);
  expectBox("Cannot install", "No packages selected", "OK");
  expectNothingStarted();
}

TEST_F(InstallChecks, AnAddressWithoutNetmaskIsAskedAbout) {
  window().toggle("system");
  window().type(IDC_ADDRESS, "10.0.0.1");
  window().click(IDC_INSTALL);
  expectBox("Warning", kAddressWarning, "No");
  expectNothingStarted();
}

TEST_F(InstallChecks, ANetmaskWithoutAddressIsAskedAbout) {
  window().toggle("system");
  window().type(IDC_NETMASK, "24");
  window().click(IDC_INSTALL);
  expectBox("Warning", kAddressWarning, "No");
  expectNothingStarted();
}

TEST_F(InstallChecks, NoChangesNothing) {
  window().toggle("system");
  window().type(IDC_ADDRESS, "10.0.0.1");
  window().type(IDC_GATEWAY, "10.0.0.254");
  window().choose(IDC_BAUD_RATE, "19200");
  window().click(IDC_INSTALL);
  expectBox("Warning", kAddressWarning, "No");
  expectNothingStarted();
  EXPECT_EQ(window().text(IDC_ADDRESS), "10.0.0.1");
  EXPECT_EQ(window().text(IDC_NETMASK), "");
  EXPECT_EQ(window().text(IDC_GATEWAY), "10.0.0.254");
  EXPECT_EQ(window().chosenLine(IDC_BAUD_RATE), "19200");
  EXPECT_EQ(packages().marked(), Texts{"system"});
}

TEST_F(InstallChecks, YesGoesOnWithoutAnAddress) {
  window().toggle("system");
  window().type(IDC_ADDRESS, "10.0.0.1");
  window().click(IDC_INSTALL);
  expectBox("Warning", kAddressWarning, "Yes");
  expectStarted();
}

TEST_F(InstallChecks, AGatewayWithoutAddressHasAQuestionOfItsOwn) {
  window().toggle("system");
  window().type(IDC_GATEWAY, "10.0.0.254");
  window().click(IDC_INSTALL);
  expectBox("Warning", kGatewayWarning, "No");
  expectNothingStarted();
  window().click(IDC_INSTALL);
  expectBox("Warning", kGatewayWarning, "Yes");
  expectStarted();
}

TEST_F(InstallChecks, BothQuestionsComeInTurn) {
  window().toggle("system");
  window().type(IDC_NETMASK, "24");
  window().type(IDC_GATEWAY, "10.0.0.254");
  window().click(IDC_INSTALL);
  expectBox("Warning", kAddressWarning, "Yes");
  expectBox("Warning", kGatewayWarning, "Yes");
  expectStarted();
}

TEST_F(InstallChecks, TextThatIsNoAddressCountsAsNone) {
  window().toggle("system");
  window().type(IDC_ADDRESS, "10.0.0.256");
  window().type(IDC_NETMASK, "24");
  window().click(IDC_INSTALL);
  expectBox("Warning", kAddressWarning, "No");
  window().type(IDC_ADDRESS, "somewhere");
  window().type(IDC_NETMASK, "");
  window().type(IDC_GATEWAY, "nowhere");
  window().click(IDC_INSTALL);
  expectStarted();
}

TEST_F(InstallChecks, ACompleteAddressIsNotAskedAbout) {
  window().toggle("system");
  window().type(IDC_ADDRESS, "10.0.0.1");
  window().type(IDC_NETMASK, "8");
  window().type(IDC_GATEWAY, "10.0.0.254");
  window().click(IDC_INSTALL);
  expectStarted();
}

TEST_F(InstallChecks, AScriptThatIsMissingFailsTheInstallation) {
  failForWantOfAScript();
  window().awaitText(IDC_STATUS_LINE, "Installation failed: Could not open script");
}

}  // namespace
}  // namespace omniset::test
