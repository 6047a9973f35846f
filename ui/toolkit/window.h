// A native window and the object that it belongs to. Main thread only.
#pragma once

#include <windows.h>

namespace omniset {

// How a window built in code begins. Position and size are in pixels.
struct WindowPlan {
  const char* text = "";
  DWORD style = 0;
  DWORD extendedStyle = 0;
  RECT place{};  // within the parent
  HWND parent = nullptr;
  int id = 0;  // of a child window
};

class Window {
 public:
  Window() = default;
  // Destroys the native window if there is one. No message of that reaches the object any more.
  virtual ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  // Null before the creation and after the native window's end.
  HWND handle() const { return handle_; }

  // Every message to the native window, from its creation on. The default hands it to the system's
  // procedure (for a wrapped control: to the control's own).
  virtual LRESULT windowProcedure(UINT message, WPARAM word, LPARAM value);

  // A window of the application's class, bound to this object. Raises Error "CreateWindow"
  // ("CreateWindowEx" with an extended style) and whatever the object's procedure raised meanwhile.
  void createWindow(const WindowPlan& plan);

 protected:
  // A control of one of the system's window classes. Raises Error with the label.
  void createControl(const char* className, const WindowPlan& plan, const char* failureLabel);

  // Ends the native window now, for objects whose members it still uses; as the destructor does it.
  void destroy() noexcept;

 private:
  friend class Dialog;

  static LRESULT CALLBACK procedure(HWND handle, UINT message, WPARAM word, LPARAM value);
  // After the native window's last message the object has none any more.
  static void unbindAfter(UINT message, HWND handle, Window& object);

  HWND handle_ = nullptr;
  WNDPROC systemProcedure_ = nullptr;  // of a wrapped control
};

}  // namespace omniset
