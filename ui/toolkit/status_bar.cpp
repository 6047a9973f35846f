#include "ui/toolkit/status_bar.h"

// After windows.h, whose types it uses.
#include <commctrl.h>

#include "core/error.h"
#include "ui/toolkit/window_text.h"

namespace omniset {

void StatusBar::create(HWND parent) {
  destroy();
  handle_ = CreateStatusWindowA(WS_CHILD | WS_VISIBLE, "", parent, 0);
  if (handle_ == nullptr) throw Error("CreateStatusWindow");
}

void StatusBar::destroy() {
  // Without effect when its parent's end was its own.
  if (handle_ != nullptr) DestroyWindow(handle_);
  handle_ = nullptr;
}

std::string StatusBar::text() const {
  return windowText(handle_);
}

void StatusBar::setText(const std::string& wanted) {
  if (text() != wanted)
    SendMessageA(handle_, SB_SETTEXTA, 0, reinterpret_cast<LPARAM>(wanted.c_str()));
}

void StatusBar::followParent() {
  // The bar looks at its parent's size itself.
  SendMessageA(handle_, WM_SIZE, 0, 0);
}

int StatusBar::height() const {
  RECT place{};
  GetWindowRect(handle_, &place);
  return place.bottom - place.top;
}

}  // namespace omniset
