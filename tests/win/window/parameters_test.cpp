// What a router is to be installed with: kept for each router, and from run to run.
#include <gmock/gmock.h>

#include "core/ipv4_address.h"
#include "tests/win/window/window_test.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;

DWORD addressValue(const std::string& dotted) {
  return parseDottedQuad(dotted).value();
}

class Parameters : public WindowTest {
 protected:
  void storeParameters() {
    storeNumber("Previous Address", addressValue("192.168.88.10"));
    storeNumber("Previous NetMask", 24);
    storeNumber("Previous Gateway", addressValue("192.168.88.1"));
    storeNumber("Previous Baud", 57600);
    storeText("Previous ScriptFile", "C:\\scripts\\first.rsc");
  }

  void expectShownParameters() {
    EXPECT_EQ(window().text(IDC_ADDRESS), "192.168.88.10");
    EXPECT_EQ(window().text(IDC_NETMASK), "24");
    EXPECT_EQ(window().text(IDC_GATEWAY), "192.168.88.1");
    EXPECT_EQ(window().chosenLine(IDC_BAUD_RATE), "57600");
    EXPECT_EQ(window().text(IDC_SCRIPT_FILE), "C:\\scripts\\first.rsc");
    EXPECT_FALSE(window().isChecked(IDC_KEEP_CONFIGURATION));
    EXPECT_FALSE(window().isChecked(IDC_USE_SCRIPT));
  }

  void expectStoredParameters() {
    EXPECT_EQ(storedNumber("Previous KeepConfig"), 0u);
    EXPECT_EQ(storedNumber("Previous Address"), addressValue("192.168.88.10"));
    EXPECT_EQ(storedNumber("Previous Netmask"), 24u);
    EXPECT_EQ(storedNumber("Previous Gateway"), addressValue("192.168.88.1"));
    EXPECT_EQ(storedNumber("Previous Baud"), 57600u);
    EXPECT_EQ(storedNumber("Previous Script"), 0u);
    EXPECT_EQ(storedText("Previous ScriptFile"), "C:\\scripts\\first.rsc");
  }
};

TEST_F(Parameters, OfTheRunBeforeFillANewRouter) {
  storeParameters();
  startWithRouter();
  expectShownParameters();
  EXPECT_TRUE(window().isWritable(IDC_ADDRESS));
  EXPECT_TRUE(window().isWritable(IDC_NETMASK));
  EXPECT_TRUE(window().isWritable(IDC_GATEWAY));
  EXPECT_TRUE(window().isEnabled(IDC_BAUD_RATE));
}

TEST_F(Parameters, AreWrittenAgainByARunThatInstalledNothing) {
  storeParameters();
  startWindow();
  endWindow();
  expectStoredParameters();
}

TEST_F(Parameters, HaveTheirDefaultsAfterAFirstRun) {
  startWindow();
  endWindow();
  for (const char* name :
       {"Previous KeepConfig", "Previous Address", "Previous NetMask", "Previous Gateway",
        "Previous Script", "PXE Enabled", "PXE Client Address"}) {
    EXPECT_EQ(storedNumber(name), 0u) << name;
  }
  EXPECT_EQ(storedNumber("Previous Baud"), 9600u);
  EXPECT_EQ(storedText("Previous ScriptFile"), "");
  EXPECT_EQ(storedText("Package Path"), packageFolder());
}

TEST_F(Parameters, OfAnInstallationAreWrittenAtTheEnd) {
  startWithRouter();
  freezeTarget();
  window().toggle("system");
  window().type(IDC_ADDRESS, "10.1.2.3");
  window().type(IDC_NETMASK, "16");
  window().type(IDC_GATEWAY, "10.1.0.1");
  window().choose(IDC_BAUD_RATE, "38400");
  writeBytes(path("own.rsc"), "/log info started\n");
  window().click(IDC_USE_SCRIPT);
  window().awaitEnabled(IDC_SCRIPT_FILE);
  window().type(IDC_SCRIPT_FILE, path("own.rsc"));
  window().click(IDC_KEEP_CONFIGURATION);
  window().settle();
  window().click(IDC_INSTALL);
  awaitStatus("Installing");
  endWindow();
  EXPECT_EQ(storedNumber("Previous KeepConfig"), 1u);
  EXPECT_EQ(storedNumber("Previous Address"), addressValue("10.1.2.3"));
  EXPECT_EQ(storedNumber("Previous NetMask"), 16u);
  EXPECT_EQ(storedNumber("Previous Gateway"), addressValue("10.1.0.1"));
  EXPECT_EQ(storedNumber("Previous Baud"), 38400u);
  EXPECT_EQ(storedNumber("Previous Script"), 1u);
  EXPECT_EQ(storedText("Previous ScriptFile"), path("own.rsc"));
}

TEST_F(Parameters, OfTheBootServerSurvive) {
  storeNumber("PXE Enabled", 1);
  storeNumber("PXE Client Address", addressValue("192.168.88.77"));
  startWindow();
  endWindow();
  EXPECT_EQ(storedNumber("PXE Enabled"), 1u);
  EXPECT_EQ(storedNumber("PXE Client Address"), addressValue("192.168.88.77"));
}

TEST_F(Parameters, StayWithTheirRouter) {
  startWindow();
  startTarget({"--count", "2"});
  selectReadyRouter(kTargetAddress);
  window().type(IDC_ADDRESS, "10.0.0.1");
  window().type(IDC_NETMASK, "8");
  window().choose(IDC_BAUD_RATE, "115200");
  window().toggle("routing");
  selectReadyRouter(kSecondTargetAddress);
  EXPECT_EQ(window().text(IDC_ADDRESS), "");
  EXPECT_EQ(window().chosenLine(IDC_BAUD_RATE), "9600");
  EXPECT_TRUE(packages().marked().empty());
  window().type(IDC_ADDRESS, "10.0.0.2");
  window().toggle("system");
  selectReadyRouter(kTargetAddress);
  EXPECT_EQ(window().text(IDC_ADDRESS), "10.0.0.1");
  EXPECT_EQ(window().text(IDC_NETMASK), "8");
  EXPECT_EQ(window().chosenLine(IDC_BAUD_RATE), "115200");
  EXPECT_THAT(packages().marked(), ::testing::UnorderedElementsAre("routing", "system"));
  selectReadyRouter(kSecondTargetAddress);
  EXPECT_EQ(window().text(IDC_ADDRESS), "10.0.0.2");
  EXPECT_THAT(packages().marked(), ElementsAre("system"));
}

TEST_F(Parameters, FollowTheArrowKeysInTheRouterList) {
  startWindow();
  startTarget({"--count", "2"});
  routers().awaitCount(2);
  window().selectRouter(0);
  window().type(IDC_ADDRESS, "10.0.0.1");
  window().focus(IDC_ROUTERS);
  routers().press(VK_DOWN);
  waitUntil("the second router is selected", [&] { return routers().selectedRow() == 1; });
  window().awaitText(IDC_ADDRESS, "");
  routers().press(VK_UP);
  window().awaitText(IDC_ADDRESS, "10.0.0.1");
}

TEST_F(Parameters, CannotBeChangedWhenNoRouterIsSelectedAnyMore) {
  startWithRouter();
  window().toggle("routing");
  window().type(IDC_ADDRESS, "10.0.0.1");
  routers().clickEmptyPlace();
  waitUntil("no router is selected", [&] { return routers().selectedRow() < 0; });
  window().awaitEnabled(IDC_INSTALL, false);
  EXPECT_FALSE(window().isWritable(IDC_ADDRESS));
  EXPECT_FALSE(window().isEnabled(IDC_SELECT_ALL));
  EXPECT_EQ(window().text(IDC_PACKAGES_GROUP), "Packages");
  EXPECT_TRUE(packages().marked().empty());
  selectReadyRouter();
  EXPECT_EQ(window().text(IDC_ADDRESS), "10.0.0.1");
  EXPECT_THAT(packages().marked(), ::testing::UnorderedElementsAre("routing", "system"));
}

TEST_F(Parameters, ThatMakeNoSenseInTheStoreDoNotKeepTheWindowFromOpening) {
  storeText("Rect X", "left");
  storeNumber("Previous Baud", 1234);
  storeNumber("Previous NetMask", 77);
  storeNumber("Previous Address", 0xFFFFFFFF);
  storeText("Package Path", std::string(5000, 'x'));
  startWithRouter();
  EXPECT_EQ(window().text(IDC_FOLDER), "C:\\");
  endWindow();
}

TEST_F(Parameters, ThatAKeptConfigurationLeavesOutCannotBeChanged) {
  startWithRouter();
  window().click(IDC_KEEP_CONFIGURATION);
  window().awaitEnabled(IDC_USE_SCRIPT, false);
  for (const int id : {IDC_ADDRESS, IDC_NETMASK, IDC_GATEWAY, IDC_SCRIPT_FILE}) {
    EXPECT_FALSE(window().isWritable(id)) << "control " << id;
  }
  window().click(IDC_KEEP_CONFIGURATION);
  window().awaitEnabled(IDC_USE_SCRIPT);
  EXPECT_TRUE(window().isWritable(IDC_ADDRESS));
}

TEST_F(Parameters, AreKeptWhenTheScriptIsSwitchedOnAndOff) {
  startWithRouter();
  window().type(IDC_ADDRESS, "10.0.0.1");
  window().type(IDC_NETMASK, "8");
  window().click(IDC_USE_SCRIPT);
  window().awaitEnabled(IDC_SCRIPT_FILE);
  window().type(IDC_SCRIPT_FILE, "C:\\own.rsc");
  window().click(IDC_USE_SCRIPT);
  window().awaitEnabled(IDC_SCRIPT_FILE, false);
  EXPECT_EQ(window().text(IDC_ADDRESS), "10.0.0.1");
  EXPECT_EQ(window().text(IDC_NETMASK), "8");
  EXPECT_EQ(window().text(IDC_SCRIPT_FILE), "C:\\own.rsc");
}

}  // namespace
}  // namespace omniset::test
