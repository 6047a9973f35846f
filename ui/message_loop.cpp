#include "ui/message_loop.h"

#include <windows.h>

#include "resources/resource_ids.h"
#include "ui/toolkit/deferred_exception.h"
#include "ui/toolkit/dialog.h"

namespace omniset {

int runMessageLoop(Dialog& window) {
  MSG message{};
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    if (message.message == WM_KEYUP && message.wParam == VK_RETURN) {
      PostMessageA(window.handle(), WM_COMMAND, MAKEWPARAM(IDC_FOLDER, EN_KILLFOCUS), 0);
    }
    if (!IsDialogMessageA(window.handle(), &message)) {
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
    rethrowDeferredException();
  }
  return static_cast<int>(message.wParam);
}

}  // namespace omniset
