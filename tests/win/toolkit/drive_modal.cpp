#include "tests/win/toolkit/drive_modal.h"

namespace omniset::test {

void pressKey(HWND control, WPARAM key) {
  PostMessageA(control, WM_KEYDOWN, key, 1);
  PostMessageA(control, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

void typeText(HWND control, const std::string& text) {
  for (const char character : text) {
    PostMessageA(control, WM_CHAR, static_cast<unsigned char>(character), 1);
  }
}

void pressButton(const Dialog& dialog, int id) {
  PostMessageA(dialog.control(id), BM_CLICK, 0, 0);
}

}  // namespace omniset::test
