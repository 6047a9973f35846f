#include "resources/resource_ids.h"
#include "tests/tools/bdl_sets.h"
#include "tests/win/driver/settings_store.h"
#include "tests/win/show/scenes.h"
#include "tests/win/window/sample_packages.h"

namespace omniset::test {

namespace {

constexpr std::size_t kLargePayload = 30'000'000;
constexpr int kTallerBy = 220;
// As an operator's own folder would be called.
constexpr char kFolder[] = "C:\\Kestrix packages";

// One is so large that its transfer lasts until a picture is taken, and one lacks what it needs.
std::vector<BdlPackage> shownPackages() {
  std::vector<BdlPackage> packages = samplePackages();
  packages.front().payloadBytes = kLargePayload;
  packages.push_back({.name = "hotspot",
                      .version = kSampleVersion,
                      .description = "Login page for guests",
                      .dependencies = {{"radius", kSampleVersion, 0}}});
  return packages;
}

void prepareReadyRouter(Stage& stage) {
  stage.selectRouter("rack 1");
  stage.window().toggle("routing");
  stage.window().type(IDC_ADDRESS, "192.168.88.2");
  stage.window().type(IDC_NETMASK, "24");
  stage.window().type(IDC_GATEWAY, "192.168.88.1");
  stage.picture("ready");
}

void showInstallation(Stage& stage) {
  stage.pressInstall("Install");
  waitUntil("a part of the package has been sent",
            [&] { return stage.window().progress(IDC_PROGRESS) >= 40; });
  stage.freezeTarget("one");
  stage.picture("installing");
  stage.thawTarget("one");
  stage.awaitStatus("rack 1", "Waiting reboot");
  stage.window().awaitText(IDC_INSTALL, "Reboot");
  stage.picture("waiting-for-reboot");
  stage.pressInstall("Reboot");
  stage.awaitStatus("rack 1", "OK");
  stage.picture("finished");
  stage.waitForTarget("one");
}

void showFailure(Stage& stage) {
  stage.selectRouter("rack 2");
  stage.window().click(IDC_USE_SCRIPT);
  stage.window().awaitEnabled(IDC_SCRIPT_FILE);
  stage.window().type(IDC_SCRIPT_FILE, "C:\\scripts\\missing.rsc");
  stage.pressInstall("Install");
  stage.awaitStatus("rack 2", "Failed");
  stage.picture("failed");
}

void makeTaller(Stage& stage, int pixels) {
  const RECT place = stage.window().rectangle();
  SetWindowPos(stage.window().handle(), nullptr, 0, 0, place.right - place.left,
               place.bottom - place.top + pixels, SWP_NOMOVE | SWP_NOZORDER);
}

// All but one are being installed.
void showSeveral(Stage& stage) {
  stage.startTarget("several", {"--label", "shelf", "--count", "5"});
  DrivenList& routers = stage.window().routers();
  routers.awaitCount(5);
  for (int row = 1; row < routers.count(); ++row) {
    stage.window().selectRouter(row);
    stage.pressInstall("Install");
    stage.window().settle();
  }
  waitUntil("a part of the package has been sent",
            [&] { return stage.window().progress(IDC_PROGRESS) >= 10; });
  stage.freezeTarget("several");
  stage.picture("several");
  makeTaller(stage, kTallerBy);
  stage.picture("taller");
}

}  // namespace

void showStates(Stage& stage) {
  clearSettings();
  stage.open();
  stage.picture("empty");
  stage.close();

  writePackages(kFolder, shownPackages());
  storeText("Package Path", kFolder);
  stage.open();
  stage.startTarget("one", {"--label", "rack 1"});
  stage.awaitStatus("rack 1", "Ready");
  prepareReadyRouter(stage);
  showInstallation(stage);
  showSeveral(stage);
  stage.close();
  stage.stopTargets();

  stage.open();
  stage.startTarget("two", {"--label", "rack 2"});
  stage.awaitStatus("rack 2", "Ready");
  showFailure(stage);
  stage.stopTargets();
  stage.close();
}

}  // namespace omniset::test
