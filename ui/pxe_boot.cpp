#include "ui/pxe_boot.h"

#include "core/ipv4_address.h"
#include "resources/resource_ids.h"
#include "ui/workflow/parameter_fields.h"

namespace omniset {

bool PXEBoot::ask(HWND parent) {
  return runModal(IDD_NET_BOOTING, parent) == IDOK;
}

INT_PTR PXEBoot::dialogProcedure(UINT message, WPARAM word, LPARAM value) {
  if (message == WM_INITDIALOG) show();
  if (message != WM_COMMAND) return Dialog::dialogProcedure(message, word, value);
  switch (LOWORD(word)) {
    case IDC_BOOT_SERVER_ENABLED:
      enabledClicked();
      return TRUE;
    case IDC_NET_BOOTING_OK:
      okPressed();
      return TRUE;
    case IDC_NET_BOOTING_CANCEL:
    case IDCANCEL:  // the Escape key and the window's own close button
      endModal(IDCANCEL);
      return TRUE;
    default:
      return FALSE;
  }
}

void PXEBoot::show() {
  setChecked(IDC_BOOT_SERVER_ENABLED, settings_.enabled);
  setText(IDC_BOOT_CLIENT_ADDRESS, dottedQuad(settings_.clientAddress));
  enabledClicked();
}

void PXEBoot::enabledClicked() {
  enable(IDC_BOOT_CLIENT_ADDRESS, isChecked(IDC_BOOT_SERVER_ENABLED));
}

// The address counts even when the service is to be off.
void PXEBoot::okPressed() {
  const auto address = validAddress(text(IDC_BOOT_CLIENT_ADDRESS));
  if (!address) {
    refuseAddress();
    return;
  }
  settings_ = {isChecked(IDC_BOOT_SERVER_ENABLED), *address};
  endModal(IDOK);
}

// A greyed field takes no focus: then the box that enables it gets it.
void PXEBoot::refuseAddress() {
  MessageBoxA(handle(), "Bad client address", "Error", MB_OK);
  setText(IDC_BOOT_CLIENT_ADDRESS, {});
  const int next =
      isEnabled(IDC_BOOT_CLIENT_ADDRESS) ? IDC_BOOT_CLIENT_ADDRESS : IDC_BOOT_SERVER_ENABLED;
  SendMessageA(handle(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(next)), TRUE);
}

}  // namespace omniset
