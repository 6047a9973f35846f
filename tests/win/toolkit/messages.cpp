#include "tests/win/toolkit/messages.h"

#include <windows.h>

namespace omniset::test {

void pumpMessages() {
  MSG message{};
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
}

}  // namespace omniset::test
