// What the window is measured beside: a program of the same toolkit, resources and message loop,
// whose dialog does nothing, four times a second and at every click.
#include <windows.h>
// After windows.h, whose types it uses.
#include <commctrl.h>

#include "bench/window/empty_dialog_ids.h"
#include "ui/message_loop.h"
#include "ui/toolkit/dialog.h"
#include "ui/toolkit/instance.h"

namespace omniset::bench {

namespace {

constexpr UINT_PTR kPollTimer = 1;
constexpr UINT kPollMs = 250;

class EmptyDialog : public Dialog {
 public:
  EmptyDialog() {
    create(IDD_EMPTY);
    SetTimer(handle(), kPollTimer, kPollMs, nullptr);
    ShowWindow(handle(), SW_SHOW);
  }

  INT_PTR dialogProcedure(UINT message, WPARAM word, LPARAM value) override {
    switch (message) {
      case WM_TIMER:
      case WM_COMMAND:
        return TRUE;
      case WM_CLOSE:
        PostQuitMessage(0);
        return TRUE;
      default:
        return Dialog::dialogProcedure(message, word, value);
    }
  }
};

}  // namespace

}  // namespace omniset::bench

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
  omniset::setModuleInstance(instance);
  InitCommonControls();
  omniset::bench::EmptyDialog dialog;
  return omniset::runMessageLoop(dialog);
}
