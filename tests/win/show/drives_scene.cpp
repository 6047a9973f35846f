#include "resources/resource_ids.h"
#include "tests/win/driver/settings_store.h"
#include "tests/win/show/scenes.h"
#include "tests/win/window/sample_packages.h"

namespace omniset::test {

namespace {

const std::string kFolder = "C:\\Kestrix packages\\2.9.7";

void showInstallation(Stage& stage) {
  WindowUnderTest& window = stage.window();
  window.selectRouter(window.routers().find("E:\\"));
  window.toggle("wireless");
  window.choose(IDC_BAUD_RATE, "115200");
  stage.picture("drive-ready");
  window.click(IDC_INSTALL);
  DrivenMessageBox box = window.awaitBox("Warning");
  stage.picture("box-erase");
  box.answer("Yes");
  stage.awaitStatus("E:\\", "OK");
  window.awaitText(IDC_STATUS_LINE, "Installation completed");
  stage.picture("drive-installed");
}

void showFloppy(Stage& stage) {
  stage.window().click(IDC_MAKE_FLOPPY);
  DrivenDialog dialog = stage.window().awaitDialog("Make Installation Floppy");
  stage.picture("dialog-floppy");
  dialog.click(IDC_MAKER_START);
  dialog.awaitText(IDC_MAKER_STATUS, "Completed");
  stage.picture("dialog-floppy-completed");
  dialog.click(IDC_MAKER_DONE);
  dialog.awaitClosed();
}

}  // namespace

void showDrives(Stage& stage) {
  clearSettings();
  writePackages(kFolder, samplePackages());
  storeText("Package Path", kFolder);
  stage.attachDrive('A', DRIVE_REMOVABLE, 0);
  stage.attachDrive('F', DRIVE_FIXED, 512);
  stage.attachDrive('E', DRIVE_REMOVABLE, 64);
  stage.open();
  stage.startTarget("four", {"--label", "rack 4"});
  stage.awaitStatus("rack 4", "Ready");
  showInstallation(stage);
  showFloppy(stage);
  stage.stopTargets();
  stage.close();
  for (const char letter : {'A', 'E', 'F'}) detachDrive(letter);
}

}  // namespace omniset::test
