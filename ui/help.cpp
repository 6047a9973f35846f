#include "ui/help.h"

#include "resources/resource_ids.h"
#include "ui/help_text.h"

namespace omniset {

void Help::show(HWND parent) {
  runModal(IDD_HELP, parent);
}

INT_PTR Help::dialogProcedure(UINT message, WPARAM word, LPARAM value) {
  if (message == WM_INITDIALOG) {
    setText(IDC_HELP_TEXT, helpText());
    // Given by us, so that the dialog does not do it: it would select the whole text.
    SetFocus(control(IDC_HELP_TEXT));
    return FALSE;
  }
  if (message != WM_COMMAND) return Dialog::dialogProcedure(message, word, value);
  switch (LOWORD(word)) {
    case IDC_HELP_CLOSE:
    case IDCANCEL:  // the Escape key and the window's own close button
      endModal(IDOK);
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace omniset
