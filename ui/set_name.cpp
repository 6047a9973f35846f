#include "ui/set_name.h"

#include "resources/resource_ids.h"

namespace omniset {

namespace {
// The store takes no name that is very much longer.
constexpr WPARAM kLongestName = 255;
}  // namespace

bool SetName::ask(HWND parent) {
  return runModal(IDD_SET_NAME, parent) == IDOK;
}

INT_PTR SetName::dialogProcedure(UINT message, WPARAM word, LPARAM value) {
  if (message == WM_INITDIALOG) {
    SendMessageA(control(IDC_SET_NAME), EM_LIMITTEXT, kLongestName, 0);
    setText(IDC_SET_NAME, name_);
  }
  if (message != WM_COMMAND) return Dialog::dialogProcedure(message, word, value);
  switch (LOWORD(word)) {
    case IDC_SET_NAME_OK:
      name_ = text(IDC_SET_NAME);
      endModal(IDOK);
      return TRUE;
    case IDC_SET_NAME_CANCEL:
    case IDCANCEL:  // the Escape key and the window's own close button
      endModal(IDCANCEL);
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace omniset
