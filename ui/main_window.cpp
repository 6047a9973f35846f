#include "ui/main_window.h"

#include <exception>
#include <initializer_list>

#include "boot/boot_images.h"
#include "core/error.h"
#include "core/trace.h"
#include "resources/resource_ids.h"
#include "ui/message_loop.h"
#include "ui/toolkit/instance.h"
#include "ui/workflow/window_placement.h"

namespace omniset {

namespace {

constexpr UINT kPollMs = 250;

struct Column {
  const char* title;
  int percent;  // of the list's width
};

void setUpColumns(ListView list, std::initializer_list<Column> columns) {
  RECT client{};
  GetClientRect(list.handle(), &client);
  // Room for the bar that appears when there are more rows than fit, and its frame.
  const int width = client.right - GetSystemMetrics(SM_CXVSCROLL) - 2 * GetSystemMetrics(SM_CXEDGE);
  int index = 0;
  for (const Column& column : columns) {
    list.addColumn(index++, column.title, MulDiv(width, column.percent, 100));
  }
}

ScreenSize presentScreen() {
  return {GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
}

// Of a minimized window, the place to which it returns; that is told without the bars at the edges
// of the screen.
RECT windowPlace(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  WINDOWPLACEMENT placement{};
  placement.length = sizeof placement;
  if (!IsIconic(window) || !GetWindowPlacement(window, &placement)) return place;
  RECT work{};
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
  place = placement.rcNormalPosition;
  OffsetRect(&place, work.left, work.top);
  return place;
}

}  // namespace

Omniset::Bound::Bound(Omniset& window, RouterInstaller& installer)
    : routerRows(ListView(window.control(IDC_ROUTERS))),
      packageRows(ListView(window.control(IDC_PACKAGES))),
      statusText(window.statusBar_),
      view(window, packageRows),
      routers(routerRows, window.clock_),
      drives(routers, window.media_, window.driveService_, window.operator_),
      catalogue(packageRows, statusText),
      workflow({installer, routers, drives, catalogue, window.sets_, window.remembered_,
                window.registry_, statusText, view, window.operator_}) {}

// The lists' unused numbers are those of images that other rows have.
Omniset::Omniset()
    : routerImages_{IDI_ROUTER, IDI_ROUTER, IDI_ROUTER, IDI_FIXED_DRIVE, IDI_REMOVABLE_DRIVE},
      packageImages_{IDI_PACKAGE, IDI_PACKAGE, IDI_PACKAGE, IDI_UNMET_DEPENDENCY},
      media_(makeMediaServices(loadBootImage)) {
  createDialog();
  service_ = std::make_unique<InstallerService>(clock_);
  startBootService();
  if (!SetTimer(handle(), kPollTimer, kPollMs, nullptr)) throw Error("SetTimer");
  statusBar_.create(handle());
  bound_ = std::make_unique<Bound>(*this, service_->installer());
  bound_->view.prepare();
  setUpLists();
  readSettings();
  ShowWindow(handle(), SW_SHOW);
}

Omniset::~Omniset() {
  if (shutDown_) return;
  try {
    shutDown();
  } catch (const std::exception& failure) {
    traceLine(std::string("closing the window: ") + failure.what());
  }
}

int Omniset::runMessageLoop() {
  return omniset::runMessageLoop(*this);
}

void Omniset::shutDown() {
  shutDown_ = true;
  writeSettings();
  ShowWindow(handle(), SW_HIDE);
  bootService_.stop();
  driveService_.stop();
  service_.reset();
}

void Omniset::createDialog() {
  create(IDD_MAIN);
  const HICON icon = LoadIconA(moduleInstance(), MAKEINTRESOURCEA(IDI_APPLICATION_ICON));
  SetClassLongPtrA(handle(), GCLP_HICON, reinterpret_cast<LONG_PTR>(icon));
  layout_.capture(handle());
}

void Omniset::startBootService() {
  Registry settings(registry_, kSettingsKey);
  bootServer_ = readBootServer(settings);
  bootService_.start({bootServer_.enabled, bootServer_.clientAddress});
}

void Omniset::setUpLists() {
  ListView routers(control(IDC_ROUTERS));
  routers.addExtendedStyles(LVS_EX_FULLROWSELECT);
  routers.setImages(routerImages_.handle());
  setUpColumns(
      routers,
      {{kRouterColumnTitles[0], 38}, {kRouterColumnTitles[1], 36}, {kRouterColumnTitles[2], 26}});
  ListView packages(control(IDC_PACKAGES));
  packages.addExtendedStyles(LVS_EX_FULLROWSELECT | LVS_EX_CHECKBOXES);
  packages.setImages(packageImages_.handle());
  setUpColumns(packages, {{kPackageColumnTitles[0], 28},
                          {kPackageColumnTitles[1], 16},
                          {kPackageColumnTitles[2], 56}});
}

void Omniset::readSettings() {
  Registry settings(registry_, kSettingsKey);
  placeWindow(settings);
  {
    Registry sets(settings, kPackageSetsSubKey);
    sets_.load(sets);
  }
  remembered_ = readRemembered(settings);
  bound_->workflow.begin();
  bound_->workflow.openFolder(readPackagePath(settings));
  bound_->workflow.listDrives();
}

void Omniset::placeWindow(Registry& settings) {
  const RECT present = windowPlace(handle());
  const WindowRectangle place = placedWindow(readGeometry(settings, present.bottom - present.top),
                                             present.right - present.left, presentScreen());
  MoveWindow(handle(), place.x, place.y, place.width, place.height, FALSE);
}

void Omniset::writeSettings() {
  const RECT window = windowPlace(handle());
  const ScreenSize screen = presentScreen();
  Settings settings;
  settings.geometry = {window.left, window.top, window.bottom - window.top, screen.width,
                       screen.height};
  settings.packagePath = bound_->catalogue.folder();
  settings.remembered = remembered_;
  settings.bootServer = bootServer_;
  omniset::writeSettings(registry_, settings, sets_);
}

}  // namespace omniset
