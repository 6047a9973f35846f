// Installations from the window, of targets in another network.
#include <gmock/gmock.h>

#include <algorithm>

#include "tests/win/window/window_test.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr Milliseconds kInstallationLimit{40'000};
constexpr int kManyTargets = 10;

// Of one of several targets, within the folder of all.
std::string storeOf(std::string address) {
  std::replace(address.begin(), address.end(), ':', '-');
  return "/" + address;
}

class Installation : public WindowTest {
 protected:
  // Installs the selected router and waits until it wants its reboot.
  void install() {
    window().click(IDC_INSTALL);
    awaitStatus("Waiting reboot", kTargetAddress, kInstallationLimit);
  }

  void reboot() {
    window().awaitText(IDC_INSTALL, "Reboot");
    window().click(IDC_INSTALL);
    awaitStatus("OK");
  }

  void setAddress(const std::string& address, const std::string& netmask) {
    window().type(IDC_ADDRESS, address);
    window().paste(IDC_NETMASK, netmask);
  }
};

TEST_F(Installation, ARouterThatAnnouncesItselfIsListed) {
  startWindow();
  startTarget();
  awaitStatus("Ready");
  const ListRow row = routers().row(rowOf());
  EXPECT_THAT(row.texts, ElementsAre("test router", kTargetAddress, "Ready"));
  EXPECT_EQ(row.image, 0);
  EXPECT_FALSE(row.selected);
}

TEST_F(Installation, InstallsThePackagesAndTheAddressThatTheOperatorChose) {
  startWithRouter();
  window().toggle("wireless");
  setAddress("192.168.88.10", "24");
  window().type(IDC_GATEWAY, "192.168.88.1");
  window().choose(IDC_BAUD_RATE, "115200");
  install();
  expectReceived({"security-2.9.7.bdl", "system-2.9.7.bdl", "wireless-2.9.7.bdl"});
  EXPECT_EQ(receivedScript(),
            "\n:local eth\n:set eth [/interface ethernet get [/interface ethernet find "
            "mac-address=02:00:00:00:00:02] name]\n/interface enable $eth\n"
            "/ip address add address=192.168.88.10/24 interface=$eth\n"
            "/port set [/port find] baud-rate=115200\n"
            "/ip route add gateway=192.168.88.1\n");
}

TEST_F(Installation, WaitsForTheOperatorToRemoveTheFloppy) {
  startWithRouter();
  window().toggle("system");
  install();
  window().awaitText(IDC_INSTALL, "Reboot");
  window().awaitText(IDC_STATUS_LINE, kRebootPrompt);
  EXPECT_EQ(window().progress(IDC_PROGRESS), 100);
  EXPECT_TRUE(window().isEnabled(IDC_INSTALL));
  EXPECT_TRUE(window().isEnabled(IDC_CANCEL));
}

TEST_F(Installation, RebootsTheRouterAndSaysThatItIsDone) {
  startWithRouter();
  window().toggle("system");
  install();
  reboot();
  window().awaitText(IDC_STATUS_LINE, "Installation finished successfully");
  window().awaitText(IDC_INSTALL, "Install");
  host().request({"wait", name_ + "/target", "10"});
}

TEST_F(Installation, WithoutAnAddressTheScriptIsEmpty) {
  startWithRouter();
  window().toggle("system");
  install();
  expectReceived({"system-2.9.7.bdl"});
  EXPECT_THAT(receivedScript(), IsEmpty());
}

TEST_F(Installation, ANetmaskAbove32BitsCountsAs32) {
  startWithRouter();
  window().toggle("system");
  setAddress("10.0.0.1", "40");
  install();
  EXPECT_THAT(receivedScript(), HasSubstr("address=10.0.0.1/32 "));
}

TEST_F(Installation, ANegativeNetmaskCountsAs32) {
  startWithRouter();
  window().toggle("system");
  setAddress("10.0.0.1", "-1");
  install();
  EXPECT_THAT(receivedScript(), HasSubstr("address=10.0.0.1/32 "));
}

TEST_F(Installation, KeepingTheConfigurationIsOfferedAndTheScriptStaysEmpty) {
  startWithRouter();
  window().toggle("system");
  setAddress("10.0.0.1", "24");
  window().click(IDC_KEEP_CONFIGURATION);
  window().settle();
  install();
  EXPECT_THAT(receivedScript(), IsEmpty());
  EXPECT_THAT(targetLog(), HasSubstr("keeping the configuration"));
}

TEST_F(Installation, TheOperatorsScriptReplacesTheGeneratedOne) {
  const std::string script = "/system identity set name=edge\r\n\xE4 is no ASCII\n";
  writeBytes(path("own.rsc"), script);
  startWithRouter();
  window().toggle("system");
  setAddress("10.0.0.1", "24");
  window().click(IDC_USE_SCRIPT);
  window().awaitEnabled(IDC_SCRIPT_FILE);
  window().type(IDC_SCRIPT_FILE, path("own.rsc"));
  install();
  EXPECT_EQ(receivedScript(), script);
}

TEST_F(Installation, WorksFromAFolderWithALongPath) {
  std::string folder = path("deep");
  while (folder.size() < 200) folder += "\\a folder with a rather long name";
  writePackages(folder, samplePackages());
  storeText("Package Path", folder);
  startWithRouter();
  EXPECT_EQ(window().text(IDC_FOLDER), folder);
  window().toggle("system");
  install();
  expectReceived({"system-2.9.7.bdl"});
}

// They are silent until all are taken, and then begin together.
TEST_F(Installation, InstallsTenRoutersAtOnce) {
  startWindow();
  startTarget({"--count", std::to_string(kManyTargets)});
  routers().awaitCount(kManyTargets);
  freezeTarget();
  const Texts addresses = routers().column(kAddressColumn);
  for (const std::string& address : addresses) {
    selectReadyRouter(address);
    window().click(IDC_SELECT_ALL);
    window().awaitText(IDC_PACKAGES_GROUP, "Selected 4 package(s)");
    window().click(IDC_INSTALL);
    awaitStatus("Installing", address);
  }
  thawTarget();
  for (const std::string& address : addresses) {
    awaitStatus("Waiting reboot", address, kInstallationLimit);
    window().selectRouter(rowOf(address));
    window().awaitText(IDC_INSTALL, "Reboot");
    window().click(IDC_INSTALL);
    window().settle();
  }
  for (const std::string& address : addresses) {
    awaitStatus("OK", address);
    expectReceived(fileNames(samplePackages()), storeOf(address));
  }
}

}  // namespace
}  // namespace omniset::test
