// Installations from the window of virtual PCs, which boot the installer system and are looked into
// afterwards.
#include <gmock/gmock.h>

#include "tests/fakes/temp_folder.h"
#include "tests/win/window/window_test.h"

namespace omniset::test {
namespace {

using ::testing::HasSubstr;

class VirtualPc : public WindowTest {
 protected:
  // The window with a PC that has booted, which is selected.
  void startWithPc(const std::string& card) {
    startWindow();
    bootPc({"card=" + card});
  }

  void bootPc(const std::vector<std::string>& settings) {
    std::vector<std::string> request{"start-pc", pc()};
    request.insert(request.end(), settings.begin(), settings.end());
    host().request(request);
    const std::string line = host().request({"mac-of-pc", pc()});
    address_ = line.substr(0, line.find('\n'));
    waitUntil(
        "a row of the PC", [&] { return !routers().rows().empty(); }, {}, kBootLimit);
    selectReadyRouter(address_);
  }

  void install() {
    window().toggle("wireless");
    window().type(IDC_ADDRESS, "192.168.88.10");
    window().paste(IDC_NETMASK, "24");
    window().click(IDC_INSTALL);
    awaitStatus("Waiting reboot", address_, kBootLimit);
    window().awaitText(IDC_INSTALL, "Reboot");
  }

  void expectInstalled() {
    host().request({"await-reboot", pc()});
    host().request({"disk-holds", name_ + "/packages", pc(), "security-2.9.7.bdl",
                    "system-2.9.7.bdl", "wireless-2.9.7.bdl"});
    const std::string script = readFile(path("pc.img.files\\autorun.scr"));
    EXPECT_THAT(script, HasSubstr("mac-address=" + address_));
    EXPECT_THAT(script, HasSubstr("add address=192.168.88.10/24 "));
  }

  std::string pc() const { return name_ + "/pc"; }

  std::string address_;
};

TEST_F(VirtualPc, IsInstalledAndRebootedByTheOperator) {
  startWithPc("virtio-net-pci");
  install();
  window().click(IDC_INSTALL);
  awaitStatus("OK", address_);
  window().awaitText(IDC_STATUS_LINE, "Installation finished successfully");
  expectInstalled();
}

// With nothing but the window to answer it, from power-on to reboot.
TEST_F(VirtualPc, BootsOverTheNetworkAndIsInstalled) {
  startWindow();
  window().click(IDC_NET_BOOTING);
  DrivenDialog dialog = window().awaitDialog("Network Booting Settings");
  dialog.click(IDC_BOOT_SERVER_ENABLED);
  dialog.awaitEnabled(IDC_BOOT_CLIENT_ADDRESS, true);
  dialog.type(IDC_BOOT_CLIENT_ADDRESS, "192.168.88.20");
  dialog.click(IDC_NET_BOOTING_OK);
  dialog.awaitClosed();
  bootPc({"boot=network"});
  install();
  window().click(IDC_INSTALL);
  awaitStatus("OK", address_);
  expectInstalled();
}

TEST_F(VirtualPc, MayBeRebootedByAKeyOfItsOwn) {
  startWithPc("e1000");
  install();
  host().request({"type-pc", pc(), "x"});
  awaitStatus("OK", address_);
  expectInstalled();
}

}  // namespace
}  // namespace omniset::test
