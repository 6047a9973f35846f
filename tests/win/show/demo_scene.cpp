#include "resources/resource_ids.h"
#include "tests/win/driver/settings_store.h"
#include "tests/win/show/scenes.h"

namespace omniset::test {

namespace {

void enableNetBooting(Stage& stage) {
  stage.window().click(IDC_NET_BOOTING);
  DrivenDialog settings = stage.window().awaitDialog("Network Booting Settings");
  settings.click(IDC_BOOT_SERVER_ENABLED);
  settings.awaitEnabled(IDC_BOOT_CLIENT_ADDRESS, true);
  settings.type(IDC_BOOT_CLIENT_ADDRESS, "192.168.88.20");
  stage.picture("0-net-booting");
  settings.click(IDC_NET_BOOTING_OK);
  settings.awaitClosed();
}

}  // namespace

void performDemo(Stage& stage) {
  clearSettings();
  storeText("Package Path", stage.path("packages"));
  stage.open();
  stage.say("The window is open and has loaded the folder: " + stage.window().statusBar());
  enableNetBooting(stage);
  stage.say("\"Net booting\" is enabled: PCs get 192.168.88.20 while they boot.");
  stage.say("A PC with an empty disk is switched on, and boots over the network ...");
  stage.startPc("pc", {"card=e1000", "boot=network"});
  const std::string label = stage.awaitRouter();
  stage.awaitStatus(label, "Ready");
  stage.selectRouter(label);
  stage.say("It announced itself as \"" + label + "\": it is \"Ready\", and selected.");

  stage.window().click(IDC_SELECT_ALL);
  stage.window().type(IDC_ADDRESS, "192.168.88.2");
  stage.window().type(IDC_NETMASK, "24");
  stage.window().type(IDC_GATEWAY, "192.168.88.1");
  stage.picture("1-ready");
  stage.pictureOfPc("pc", "pc-1-ready");
  stage.say("All packages are marked, an address is entered. Pressing \"Install\" ...");

  stage.pressInstall("Install");
  stage.awaitStatus(label, "Waiting reboot");
  stage.window().awaitText(IDC_INSTALL, "Reboot");
  stage.picture("2-waiting-for-reboot");
  stage.pictureOfPc("pc", "pc-2-waiting-for-reboot");
  stage.say("Everything was sent: " + stage.window().text(IDC_STATUS_LINE) + ".");
  stage.say("Pressing \"Reboot\" ...");

  stage.pressInstall("Reboot");
  stage.awaitStatus(label, "OK");
  stage.picture("3-finished");
  stage.say("The row says \"OK\": " + stage.window().text(IDC_STATUS_LINE) + ".");
  stage.awaitReboot("pc");
  stage.close();
}

}  // namespace omniset::test
