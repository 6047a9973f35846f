#include "resources/resource_ids.h"
#include "tests/win/driver/settings_store.h"
#include "tests/win/driver/top_windows.h"
#include "tests/win/show/scenes.h"
#include "tests/win/window/sample_packages.h"

namespace omniset::test {

namespace {

void showBox(Stage& stage, const std::string& caption, const std::string& picture,
             const std::string& answer) {
  DrivenMessageBox box = stage.window().awaitBox(caption);
  stage.picture(picture);
  box.answer(answer);
}

void showInstallBoxes(Stage& stage) {
  stage.window().click(IDC_INSTALL);
  showBox(stage, "Cannot install", "box-no-packages", "OK");
  stage.window().toggle("system");
  stage.window().type(IDC_ADDRESS, "192.168.88.2");
  stage.window().type(IDC_GATEWAY, "192.168.88.1");
  stage.window().click(IDC_INSTALL);
  showBox(stage, "Warning", "box-address", "Yes");
  showBox(stage, "Warning", "box-gateway", "No");
}

void showSetDialogs(Stage& stage) {
  WindowUnderTest& window = stage.window();
  window.click(IDC_SELECT_NONE);
  window.settle();
  window.click(IDC_SAVE_SET);
  showBox(stage, "Error", "box-empty-set", "OK");
  window.toggle("routing");
  window.click(IDC_SAVE_SET);
  DrivenDialog prompt = window.awaitDialog("Save set");
  prompt.paste(IDC_SET_NAME, "Edge routers");
  stage.picture("dialog-save-set");
  prompt.click(IDC_SET_NAME_OK);
  prompt.awaitClosed();
  stage.picture("set-saved");
  window.toggle("wireless");
  window.click(IDC_SAVE_SET);
  DrivenDialog again = window.awaitDialog("Save set");
  again.paste(IDC_SET_NAME, "Edge routers");
  again.click(IDC_SET_NAME_OK);
  showBox(stage, "Error", "box-set-exists", "OK");
  DrivenDialog third = window.awaitDialog("Save set");
  third.click(IDC_SET_NAME_CANCEL);
  third.awaitClosed();
}

void showHelp(Stage& stage) {
  stage.window().click(IDC_SHOW_HELP);
  DrivenDialog help = stage.window().awaitDialog("Help");
  stage.picture("dialog-help");
  help.click(IDC_HELP_CLOSE);
  help.awaitClosed();
}

void showNetBooting(Stage& stage) {
  stage.window().click(IDC_NET_BOOTING);
  DrivenDialog settings = stage.window().awaitDialog("Network Booting Settings");
  settings.click(IDC_BOOT_SERVER_ENABLED);
  settings.awaitEnabled(IDC_BOOT_CLIENT_ADDRESS);
  settings.paste(IDC_BOOT_CLIENT_ADDRESS, "192.168.88");
  settings.click(IDC_NET_BOOTING_OK);
  showBox(stage, "Error", "box-client-address", "OK");
  settings.paste(IDC_BOOT_CLIENT_ADDRESS, "192.168.88.10");
  stage.picture("dialog-net-booting");
  settings.paste(IDC_BOOT_CLIENT_ADDRESS, "10.0.0.10");
  settings.click(IDC_NET_BOOTING_OK);
  showBox(stage, "Warning", "box-client-subnet", "OK");
}

// The choosers are the system's.
void showChoosers(Stage& stage) {
  stage.window().click(IDC_BROWSE);
  DrivenDialog folders = stage.window().awaitDialog("Browse for Folder");
  stage.picture("dialog-folder");
  folders.close();
  folders.awaitClosed();
  stage.window().click(IDC_USE_SCRIPT);
  stage.window().awaitEnabled(IDC_CHOOSE_SCRIPT);
  stage.window().click(IDC_CHOOSE_SCRIPT);
  DrivenDialog files = stage.window().awaitDialog("Select script");
  stage.picture("dialog-script");
  files.close();
  files.awaitClosed();
}

void showSecondInstance(Stage& stage) {
  const auto second = std::make_shared<Process>(stage.program(), stage.path("trace-second.txt"));
  DrivenMessageBox box(awaitTopWindow(*second, "Error"), second);
  stage.picture("box-already-running");
  box.answer("OK");
}

}  // namespace

void showDialogs(Stage& stage) {
  clearSettings();
  const std::string folder = "C:\\Kestrix packages\\small";
  writePackages(folder, samplePackages());
  storeText("Package Path", folder);
  stage.open();
  stage.startTarget("three", {"--label", "rack 3"});
  stage.awaitStatus("rack 3", "Ready");
  stage.selectRouter("rack 3");
  showInstallBoxes(stage);
  showSetDialogs(stage);
  showNetBooting(stage);
  showHelp(stage);
  showChoosers(stage);
  showSecondInstance(stage);
  stage.stopTargets();
  stage.close();
}

}  // namespace omniset::test
