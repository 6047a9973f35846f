#include "ui/toolkit/window.h"

#include "core/error.h"
#include "ui/toolkit/deferred_exception.h"
#include "ui/toolkit/instance.h"

namespace omniset {

namespace {

constexpr char kApplicationClass[] = "OmnisetWindow";

void registerApplicationClass(WNDPROC procedure) {
  WNDCLASSA found;
  if (GetClassInfoA(moduleInstance(), kApplicationClass, &found)) return;
  WNDCLASSA made{};
  made.lpfnWndProc = procedure;
  made.hInstance = moduleInstance();
  made.hCursor = LoadCursorA(nullptr, IDC_ARROW);
  made.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
  made.lpszClassName = kApplicationClass;
  if (RegisterClassA(&made) == 0) throw Error("RegisterClass");
}

// A child's number travels in the place of a menu.
HMENU asMenu(int id) {
  return reinterpret_cast<HMENU>(static_cast<INT_PTR>(id));
}

HWND createNative(const char* className, const WindowPlan& plan, void* parameter) {
  const RECT& place = plan.place;
  return CreateWindowExA(plan.extendedStyle, className, plan.text, plan.style, place.left,
                         place.top, place.right - place.left, place.bottom - place.top, plan.parent,
                         asMenu(plan.id), moduleInstance(), parameter);
}

}  // namespace

Window::~Window() {
  destroy();
}

void Window::destroy() noexcept {
  if (handle_ == nullptr) return;
  const HWND ended = handle_;
  handle_ = nullptr;
  if (systemProcedure_ != nullptr) {
    SetWindowLongPtrA(ended, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(systemProcedure_));
  }
  SetWindowLongPtrA(ended, GWLP_USERDATA, 0);
  DestroyWindow(ended);
}

LRESULT Window::windowProcedure(UINT message, WPARAM word, LPARAM value) {
  if (systemProcedure_ != nullptr) {
    return CallWindowProcA(systemProcedure_, handle_, message, word, value);
  }
  return DefWindowProcA(handle_, message, word, value);
}

void Window::createWindow(const WindowPlan& plan) {
  registerApplicationClass(&Window::procedure);
  if (createNative(kApplicationClass, plan, this) == nullptr) {
    const Error failure(plan.extendedStyle == 0 ? "CreateWindow" : "CreateWindowEx");
    rethrowDeferredException();
    throw failure;
  }
  try {
    rethrowDeferredException();
  } catch (...) {
    destroy();
    throw;
  }
}

void Window::createControl(const char* className, const WindowPlan& plan,
                           const char* failureLabel) {
  const HWND made = createNative(className, plan, nullptr);
  if (made == nullptr) throw Error(failureLabel);
  handle_ = made;
  SetWindowLongPtrA(made, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  systemProcedure_ = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrA(made, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Window::procedure)));
}

LRESULT CALLBACK Window::procedure(HWND handle, UINT message, WPARAM word, LPARAM value) {
  auto* self = reinterpret_cast<Window*>(GetWindowLongPtrA(handle, GWLP_USERDATA));
  if (message == WM_NCCREATE) {
    self = static_cast<Window*>(reinterpret_cast<CREATESTRUCTA*>(value)->lpCreateParams);
    SetWindowLongPtrA(handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    self->handle_ = handle;
  }
  // What comes before the binding, and at the end of an object that is half gone, is the system's.
  if (self == nullptr) return DefWindowProcA(handle, message, word, value);
  LRESULT result = 0;
  try {
    result = self->windowProcedure(message, word, value);
  } catch (...) {
    deferException(std::current_exception());
  }
  unbindAfter(message, handle, *self);
  return result;
}

// The object may have ended its window, or itself, in the message: then it is unbound already.
void Window::unbindAfter(UINT message, HWND handle, Window& object) {
  if (message != WM_NCDESTROY || GetWindowLongPtrA(handle, GWLP_USERDATA) == 0) return;
  object.handle_ = nullptr;
  SetWindowLongPtrA(handle, GWLP_USERDATA, 0);
}

}  // namespace omniset
