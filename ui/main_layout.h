// Where the main window's controls go when it grows. Only its height can: the two lists share what
// is added.
#pragma once

#include <windows.h>

#include <vector>

namespace omniset {

class MainLayout {
 public:
  // Takes the controls as the template has placed them.
  void capture(HWND dialog);
  // The window has moved to a screen with so many dots to the inch; the system itself enlarges the
  // controls.
  void setResolution(int resolution) { resolution_ = resolution; }
  // Places them for the window's present size.
  void apply() const;
  // Keeps the window's width, and its height from becoming less than it was at creation.
  void limit(MINMAXINFO& limits) const;

 private:
  // The shares of an added height by which a control moves down and grows.
  enum class Share { kNone, kRouters, kPackages };
  struct Item {
    HWND control;
    RECT place;  // in the dialog's client area
    Share moves;
    Share grows;
  };

  static Item itemOf(HWND dialog, HWND control, const RECT& packagesGroup);
  // A length at creation, at the present resolution.
  int scaled(int length) const;

  HWND dialog_ = nullptr;
  SIZE window_{};
  int clientHeight_ = 0;
  int capturedResolution_ = 1;
  int resolution_ = 1;
  std::vector<Item> items_;
};

}  // namespace omniset
