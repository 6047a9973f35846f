#include "tests/win/toolkit/template_checks.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "ui/toolkit/window_text.h"

namespace omniset::test {

namespace {

constexpr int kLabelId = 0xFFFF;
// Room for a push button's frame, and for a check box with the gap behind it, at 96 dots an inch.
constexpr int kButtonFrame = 6;
constexpr int kCheckMark = 18;

std::string classOf(HWND window) {
  char name[64] = "";
  GetClassNameA(window, name, sizeof name);
  return name;
}

LONG_PTR styleOf(HWND window) {
  return GetWindowLongPtrA(window, GWL_STYLE);
}

// The direct children only: a list has a header of its own.
std::vector<HWND> controlsOf(const Dialog& dialog) {
  std::vector<HWND> found;
  for (HWND child = GetWindow(dialog.handle(), GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    found.push_back(child);
  }
  return found;
}

std::string described(HWND control) {
  return classOf(control) + " " + std::to_string(GetDlgCtrlID(control)) + " \"" +
         windowText(control) + "\"";
}

bool isGroup(HWND control) {
  return classOf(control) == "Button" && (styleOf(control) & BS_TYPEMASK) == BS_GROUPBOX;
}

RECT placeOf(const Dialog& dialog, HWND control) {
  RECT place{};
  GetWindowRect(control, &place);
  MapWindowPoints(nullptr, dialog.handle(), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

// Labels break their texts between words, and none within one.
bool breaksLines(HWND control) {
  const auto kind = styleOf(control) & SS_TYPEMASK;
  return classOf(control) == "Static" && (kind == SS_LEFT || kind == SS_CENTER);
}

SIZE brokenText(HDC canvas, HWND control, const std::string& text) {
  RECT needed{};
  GetClientRect(control, &needed);
  DrawTextA(canvas, text.c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
  return {needed.right, needed.bottom};
}

SIZE measuredText(HWND control) {
  const HDC canvas = GetDC(control);
  const HGDIOBJ font =
      SelectObject(canvas, reinterpret_cast<HFONT>(SendMessageA(control, WM_GETFONT, 0, 0)));
  const std::string text = windowText(control);
  SIZE size{};
  EXPECT_TRUE(GetTextExtentPoint32A(canvas, text.c_str(), static_cast<int>(text.size()), &size));
  if (breaksLines(control)) size = brokenText(canvas, control, text);
  SelectObject(canvas, font);
  ReleaseDC(control, canvas);
  return size;
}

int dotsPerInch() {
  const HDC screen = GetDC(nullptr);
  const int dots = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return dots;
}

int scaled(int pixels) {
  return MulDiv(pixels, dotsPerInch(), 96);
}

int roomBesideText(HWND control) {
  if (classOf(control) != "Button" || isGroup(control)) return 0;
  const auto kind = styleOf(control) & BS_TYPEMASK;
  return scaled(kind == BS_AUTOCHECKBOX ? kCheckMark : kButtonFrame);
}

void expectControl(const Dialog& dialog, const ExpectedControl& expected) {
  const HWND control = GetDlgItem(dialog.handle(), expected.id);
  ASSERT_NE(nullptr, control) << expected.id;
  EXPECT_EQ(expected.className, classOf(control)) << expected.id;
  EXPECT_EQ(expected.text, windowText(control)) << expected.id;
  EXPECT_EQ(expected.style, styleOf(control) & expected.style) << described(control);
  EXPECT_EQ(0, styleOf(control) & expected.without) << described(control);
  EXPECT_TRUE(styleOf(control) & WS_VISIBLE) << described(control);
}

}  // namespace

void expectControls(const Dialog& dialog, const std::vector<ExpectedControl>& controls,
                    const std::vector<std::string>& labels) {
  for (const ExpectedControl& expected : controls) expectControl(dialog, expected);
  std::vector<std::string> labelsFound;
  size_t numbered = 0;
  for (const HWND control : controlsOf(dialog)) {
    if ((GetDlgCtrlID(control) & 0xFFFF) != kLabelId) {
      ++numbered;
      continue;
    }
    EXPECT_EQ("Static", classOf(control));
    labelsFound.push_back(windowText(control));
  }
  EXPECT_EQ(controls.size(), numbered);
  EXPECT_EQ(labels, labelsFound);
}

void expectSizeAndFont(const Dialog& dialog, int width, int height) {
  RECT units{0, 0, width, height};
  MapDialogRect(dialog.handle(), &units);
  RECT client{};
  GetClientRect(dialog.handle(), &client);
  EXPECT_EQ(units.right, client.right);
  EXPECT_EQ(units.bottom, client.bottom);
  LOGFONTA font{};
  const auto used = reinterpret_cast<HFONT>(SendMessageA(dialog.handle(), WM_GETFONT, 0, 0));
  ASSERT_NE(0, GetObjectA(used, sizeof font, &font));
  EXPECT_STREQ("MS Sans Serif", font.lfFaceName);
  EXPECT_EQ(-MulDiv(8, dotsPerInch(), 72), font.lfHeight);  // 8 points
}

void expectNoTextClipped(const Dialog& dialog) {
  for (const HWND control : controlsOf(dialog)) {
    if (classOf(control) != "Button" && classOf(control) != "Static") continue;
    RECT client{};
    GetClientRect(control, &client);
    const SIZE needed = measuredText(control);
    EXPECT_GT(needed.cx, 0) << described(control);
    EXPECT_LE(needed.cx + roomBesideText(control), client.right) << described(control);
    EXPECT_LE(needed.cy, client.bottom) << described(control);
  }
}

void expectNothingOverlaps(const Dialog& dialog, int freeUnitsBelow) {
  RECT below{0, 0, 1, freeUnitsBelow};
  MapDialogRect(dialog.handle(), &below);
  RECT inside{};
  GetClientRect(dialog.handle(), &inside);
  inside.bottom -= below.bottom;
  const std::vector<HWND> controls = controlsOf(dialog);
  for (const HWND control : controls) {
    const RECT place = placeOf(dialog, control);
    RECT common{};
    IntersectRect(&common, &place, &inside);
    EXPECT_TRUE(EqualRect(&common, &place)) << described(control) << " leaves the window";
    for (const HWND other : controls) {
      if (other == control || isGroup(other) || isGroup(control)) continue;
      const RECT otherPlace = placeOf(dialog, other);
      EXPECT_FALSE(IntersectRect(&common, &place, &otherPlace))
          << described(control) << " lies on " << described(other);
    }
  }
}

std::vector<int> tabOrder(const Dialog& dialog) {
  std::vector<int> order;
  const HWND first = GetNextDlgTabItem(dialog.handle(), nullptr, FALSE);
  for (HWND control = first; control != nullptr;
       control = GetNextDlgTabItem(dialog.handle(), control, FALSE)) {
    if (!order.empty() && control == first) break;
    order.push_back(GetDlgCtrlID(control));
    if (order.size() > controlsOf(dialog).size()) break;
  }
  return order;
}

}  // namespace omniset::test
