// A line of text along the bottom edge of a window. Main thread only.
#pragma once

#include <windows.h>

#include <string>

namespace omniset {

class StatusBar {
 public:
  StatusBar() = default;
  ~StatusBar() { destroy(); }
  StatusBar(const StatusBar&) = delete;
  StatusBar& operator=(const StatusBar&) = delete;

  // Raises Error "CreateStatusWindow".
  void create(HWND parent);
  void destroy();

  // The text of its single part.
  std::string text() const;
  void setText(const std::string& text);

  void followParent();  // to be called at the parent's WM_SIZE
  int height() const;   // in pixels

  HWND handle() const { return handle_; }

 private:
  HWND handle_ = nullptr;
};

}  // namespace omniset
