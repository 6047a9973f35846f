#include "ui/main_layout.h"

#include <algorithm>
#include <array>

#include "resources/resource_ids.h"

namespace omniset {

namespace {

// Below the list of routers, and moved down as it grows.
constexpr std::array<int, 7> kBelowRouters = {IDC_STATUS_LINE, IDC_PROGRESS,  IDC_MAKE_FLOPPY,
                                              IDC_NET_BOOTING, IDC_SHOW_HELP, IDC_INSTALL,
                                              IDC_CANCEL};

// In dots to the inch. Systems that know a resolution for each window tell it by a function that
// others lack.
int resolutionOf(HWND window) {
  using Function = UINT(WINAPI*)(HWND);
  const FARPROC found = GetProcAddress(GetModuleHandleA("user32.dll"), "GetDpiForWindow");
  if (found)
    return static_cast<int>(reinterpret_cast<Function>(reinterpret_cast<void*>(found))(window));
  const HDC screen = GetDC(nullptr);
  const int resolution = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return resolution;
}

RECT placeIn(HWND dialog, HWND control) {
  RECT place{};
  GetWindowRect(control, &place);
  MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
  return place;
}

bool isBelowRouters(int id) {
  return std::find(kBelowRouters.begin(), kBelowRouters.end(), id) != kBelowRouters.end();
}

}  // namespace

int MainLayout::scaled(int length) const {
  return MulDiv(length, resolution_, capturedResolution_);
}

MainLayout::Item MainLayout::itemOf(HWND dialog, HWND control, const RECT& packagesGroup) {
  Item item{control, placeIn(dialog, control), Share::kNone, Share::kNone};
  const int id = GetDlgCtrlID(control);
  // Also the labels among the packages, which have no number of their own.
  if (item.place.top >= packagesGroup.top || isBelowRouters(id)) item.moves = Share::kRouters;
  if (id == IDC_ROUTERS || id == IDC_ROUTERS_GROUP) item.grows = Share::kRouters;
  if (id == IDC_PACKAGES || id == IDC_PACKAGES_GROUP) item.grows = Share::kPackages;
  return item;
}

void MainLayout::capture(HWND dialog) {
  dialog_ = dialog;
  capturedResolution_ = resolution_ = resolutionOf(dialog);
  RECT window{};
  GetWindowRect(dialog, &window);
  window_ = {window.right - window.left, window.bottom - window.top};
  RECT client{};
  GetClientRect(dialog, &client);
  clientHeight_ = client.bottom;
  const RECT packagesGroup = placeIn(dialog, GetDlgItem(dialog, IDC_PACKAGES_GROUP));
  items_.clear();
  for (HWND control = GetWindow(dialog, GW_CHILD); control;
       control = GetWindow(control, GW_HWNDNEXT)) {
    items_.push_back(itemOf(dialog, control, packagesGroup));
  }
}

void MainLayout::apply() const {
  RECT client{};
  GetClientRect(dialog_, &client);
  const int added = std::max<int>(0, client.bottom - scaled(clientHeight_));
  const auto share = [added](Share which) {
    if (which == Share::kNone) return 0;
    return which == Share::kRouters ? added / 2 : added - added / 2;
  };
  HDWP batch = BeginDeferWindowPos(static_cast<int>(items_.size()));
  for (const Item& item : items_) {
    if (!batch) return;
    const RECT& place = item.place;
    batch = DeferWindowPos(batch, item.control, nullptr, scaled(place.left),
                           scaled(place.top) + share(item.moves), scaled(place.right - place.left),
                           scaled(place.bottom - place.top) + share(item.grows),
                           SWP_NOZORDER | SWP_NOACTIVATE);
  }
  if (batch) EndDeferWindowPos(batch);
  // A group's frame leaves parts of its old place behind.
  RedrawWindow(dialog_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void MainLayout::limit(MINMAXINFO& limits) const {
  if (!dialog_) return;
  const int width = scaled(window_.cx);
  limits.ptMinTrackSize = {width, scaled(window_.cy)};
  limits.ptMaxTrackSize.x = width;
  limits.ptMaxSize.x = width;
}

}  // namespace omniset
