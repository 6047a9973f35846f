// What each message means to the workflow.
#include <windows.h>
// After windows.h, whose types it uses.
#include <dbt.h>

#include "core/trace.h"
#include "resources/resource_ids.h"
#include "ui/help.h"
#include "ui/main_window.h"
#include "ui/maker.h"
#include "ui/pxe_boot.h"

namespace omniset {

namespace {

// The window's messages to itself, so that a refresh runs when a list has finished changing.
constexpr UINT kPrivateMessage = WM_USER;
constexpr DWORD kSelectionChanged = 0xABCDEF00;
constexpr DWORD kPackageMarkMoved = 0xABCDEF01;

// Newer than the oldest system that the program runs on.
constexpr UINT kResolutionChanged = 0x02E0;

bool changesState(const NMHDR& notification, UINT mask) {
  const auto& change = reinterpret_cast<const NMLISTVIEW&>(notification);
  return (change.uChanged & LVIF_STATE) && ((change.uOldState ^ change.uNewState) & mask);
}

// A new row's mark is set up by the list itself.
bool changesMark(const NMHDR& notification) {
  const auto& change = reinterpret_cast<const NMLISTVIEW&>(notification);
  return changesState(notification, LVIS_STATEIMAGEMASK) &&
         (change.uOldState & LVIS_STATEIMAGEMASK) != 0;
}

}  // namespace

INT_PTR Omniset::dialogProcedure(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_GETMINMAXINFO) {
    layout_.limit(*reinterpret_cast<MINMAXINFO*>(lParam));
    return TRUE;
  }
  if (!bound_) return Dialog::dialogProcedure(message, wParam, lParam);
  switch (message) {
    case kPrivateMessage:  // also the system's question for the default button
      return privateMessage(wParam) ? TRUE : defaultButton();
    case WM_COMMAND:
      return command(LOWORD(wParam), HIWORD(wParam)) ? TRUE : FALSE;
    case WM_NOTIFY:
      return notified(*reinterpret_cast<const NMHDR*>(lParam));
    case WM_TIMER:
      timerTick();
      return TRUE;
    case WM_SIZE:
      sized();
      return TRUE;
    case kResolutionChanged:
      layout_.setResolution(HIWORD(wParam));
      return FALSE;  // the system enlarges the dialog and what is in it
    case WM_DEVICECHANGE:
      devicesChanged(wParam, lParam);
      return answer(TRUE);
    case WM_ENDSESSION:
      if (wParam) writeSettings();
      return TRUE;
    case WM_CLOSE:
      closeRequested();
      return TRUE;
    default:
      return Dialog::dialogProcedure(message, wParam, lParam);
  }
}

// The answer to a message whose result is a value of its own.
INT_PTR Omniset::answer(LONG_PTR result) const {
  SetWindowLongPtrA(handle(), DWLP_MSGRESULT, result);
  return TRUE;
}

bool Omniset::privateMessage(WPARAM tag) {
  switch (static_cast<DWORD>(tag)) {
    case kSelectionChanged:
      bound_->workflow.selectionChanged();
      return true;
    case kPackageMarkMoved:
      bound_->workflow.describePackage();
      return true;
    default:
      return false;
  }
}

// Return in the folder field takes the folder over and must not press "Install" as well.
INT_PTR Omniset::defaultButton() const {
  return GetFocus() == control(IDC_FOLDER) ? answer(MAKELONG(0, DC_HASDEFID)) : FALSE;
}

bool Omniset::command(int id, int notification) {
  if (id == IDC_FOLDER) {
    if (notification == EN_KILLFOCUS) bound_->workflow.folderEntered();
    return notification == EN_KILLFOCUS;
  }
  if (id == IDC_SETS) {
    if (notification == CBN_SELCHANGE) bound_->workflow.applyChosenSet();
    return notification == CBN_SELCHANGE;
  }
  return notification == BN_CLICKED && (parameterCommand(id) || packageCommand(id));
}

bool Omniset::parameterCommand(int id) {
  switch (id) {
    case IDC_INSTALL:
      bound_->workflow.install();
      return true;
    case IDC_CANCEL:
      bound_->workflow.cancel();
      return true;
    case IDC_KEEP_CONFIGURATION:
    case IDC_USE_SCRIPT:
      bound_->workflow.parametersClicked();
      return true;
    case IDC_CHOOSE_SCRIPT:
      bound_->workflow.chooseScript();
      return true;
    case IDC_NET_BOOTING:
      editNetBooting();
      return true;
    case IDC_MAKE_FLOPPY:
      makeFloppies();
      return true;
    case IDC_SHOW_HELP:
      Help().show(handle());
      return true;
    default:
      return false;
  }
}

bool Omniset::packageCommand(int id) {
  switch (id) {
    case IDC_SELECT_ALL:
      bound_->workflow.selectAllPackages();
      return true;
    case IDC_SELECT_NONE:
      bound_->workflow.selectNoPackages();
      return true;
    case IDC_BROWSE:
      bound_->workflow.browse();
      return true;
    case IDC_SAVE_SET:
      bound_->workflow.saveSet();
      return true;
    case IDC_DELETE_SET:
      bound_->workflow.deleteSet();
      return true;
    default:
      return false;
  }
}

INT_PTR Omniset::notified(const NMHDR& notification) {
  if (notification.idFrom == IDC_ROUTERS) routersNotified(notification);
  return notification.idFrom == IDC_PACKAGES ? packagesNotified(notification) : FALSE;
}

void Omniset::routersNotified(const NMHDR& notification) {
  if (notification.code != static_cast<UINT>(LVN_ITEMCHANGING)) return;
  if (!changesState(notification, LVIS_SELECTED)) return;
  PostMessageA(handle(), kPrivateMessage, kSelectionChanged, 0);
  bound_->workflow.selectionChanging();
}

// The list is kept from changing marks by itself: a click anywhere on a row means the same, and
// what other packages depend on stays marked.
INT_PTR Omniset::packagesNotified(const NMHDR& notification) {
  switch (notification.code) {
    case static_cast<UINT>(LVN_ITEMCHANGING):
      if (changesMark(notification) && !bound_->packageRows.isShowingMarks()) return answer(TRUE);
      return FALSE;
    case static_cast<UINT>(NM_CLICK):
    case static_cast<UINT>(NM_DBLCLK):
      packageClicked(notification);
      return TRUE;
    case static_cast<UINT>(LVN_KEYDOWN):
      packageKey(notification);
      return TRUE;
    default:
      return FALSE;
  }
}

void Omniset::packageClicked(const NMHDR& notification) {
  const POINT place = reinterpret_cast<const NMITEMACTIVATE&>(notification).ptAction;
  bound_->workflow.togglePackage(ListView(notification.hwndFrom).rowAt(place));
}

void Omniset::packageKey(const NMHDR& notification) {
  PostMessageA(handle(), kPrivateMessage, kPackageMarkMoved, 0);
  if (reinterpret_cast<const NMLVKEYDOWN&>(notification).wVKey != VK_SPACE) return;
  bound_->workflow.togglePackage(bound_->view.packageAtMark());
}

void Omniset::editNetBooting() {
  PXEBoot dialog(bootServer_);
  if (dialog.ask(handle())) netBooting_.changeSettings(dialog.settings());
}

void Omniset::makeFloppies() {
  Maker(registry_, media_).run(handle());
}

// A drive that keeps its letter is told of, too, when its medium goes.
void Omniset::devicesChanged(WPARAM event, LPARAM what) {
  if (event == DBT_DEVICEARRIVAL) bound_->workflow.drivesChanged();
  if (event != DBT_DEVICEREMOVECOMPLETE) return;
  const auto* device = reinterpret_cast<const DEV_BROADCAST_HDR*>(what);
  const bool isVolume = device && device->dbch_devicetype == DBT_DEVTYP_VOLUME;
  bound_->workflow.mediaRemoved(
      isVolume ? reinterpret_cast<const DEV_BROADCAST_VOLUME*>(device)->dbcv_unitmask : 0);
}

void Omniset::timerTick() {
  bound_->workflow.poll();
  bound_->view.keepFocus();
  if (service_->hasEnded()) bound_->workflow.installerEnded();
  // Disabled while a dialog or a box is open over it.
  if (IsWindowEnabled(handle())) netBooting_.poll();
}

void Omniset::closeRequested() {
  traceLine("wm_close");
  KillTimer(handle(), kPollTimer);
  PostQuitMessage(0);
}

void Omniset::sized() {
  if (IsIconic(handle())) return;
  statusBar_.followParent();
  layout_.apply();
}

}  // namespace omniset
