// Where the window stands and how large it may be.
#include <gmock/gmock.h>

#include "tests/win/window/window_test.h"

namespace omniset::test {
namespace {

constexpr int kAdded = 120;

LONG width(const RECT& rectangle) {
  return rectangle.right - rectangle.left;
}

LONG height(const RECT& rectangle) {
  return rectangle.bottom - rectangle.top;
}

class Geometry : public WindowTest {
 protected:
  static int screenWidth() { return GetSystemMetrics(SM_CXSCREEN); }
  static int screenHeight() { return GetSystemMetrics(SM_CYSCREEN); }

  // As a drag of the frame does.
  void resize(LONG newWidth, LONG newHeight) {
    const RECT before = window().rectangle();
    SetWindowPos(window().handle(), nullptr, before.left, before.top, newWidth, newHeight,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    window().settle();
  }

  void storePlace(int x, int y, int height) {
    storeNumber("Rect X", static_cast<DWORD>(x));
    storeNumber("Rect Y", static_cast<DWORD>(y));
    storeNumber("Rect H", static_cast<DWORD>(height));
  }

  void storeScreen(int width, int height) {
    storeNumber("Screen X", static_cast<DWORD>(width));
    storeNumber("Screen Y", static_cast<DWORD>(height));
  }
};

TEST_F(Geometry, ANegativePlaceIsTakenAsZero) {
  storeNumber("Rect X", static_cast<DWORD>(-5));
  storeNumber("Rect Y", static_cast<DWORD>(-1));
  startWindow();
  EXPECT_EQ(window().rectangle().left, 0);
  EXPECT_EQ(window().rectangle().top, 0);
}

TEST_F(Geometry, AStoredHeightThatIsTooSmallIsNotUsed) {
  startWindow();
  const LONG lowest = height(window().rectangle());
  endWindow();
  storeNumber("Rect H", 50);
  startWindow();
  EXPECT_EQ(height(window().rectangle()), lowest);
}

TEST_F(Geometry, IsWrittenAtTheEndAndComesBack) {
  startWindow();
  const RECT first = window().rectangle();
  SetWindowPos(window().handle(), nullptr, 77, 33, width(first), height(first) + kAdded,
               SWP_NOZORDER | SWP_NOACTIVATE);
  window().settle();
  endWindow();
  EXPECT_EQ(storedNumber("Rect X"), 77u);
  EXPECT_EQ(storedNumber("Rect Y"), 33u);
  EXPECT_EQ(storedNumber("Rect H"), static_cast<DWORD>(height(first) + kAdded));
  EXPECT_EQ(storedNumber("Screen X"), static_cast<DWORD>(screenWidth()));
  EXPECT_EQ(storedNumber("Screen Y"), static_cast<DWORD>(screenHeight()));
  startWindow();
  EXPECT_EQ(window().rectangle().left, 77);
  EXPECT_EQ(window().rectangle().top, 33);
  EXPECT_EQ(height(window().rectangle()), height(first) + kAdded);
  EXPECT_EQ(width(window().rectangle()), width(first));
}

TEST_F(Geometry, IsPulledInsideAScreenThatShrank) {
  storePlace(screenWidth() + 500, screenHeight() + 500, screenHeight() + 300);
  storeScreen(screenWidth() + 2000, screenHeight() + 2000);
  startWindow();
  const RECT place = window().rectangle();
  EXPECT_EQ(place.right, screenWidth());
  EXPECT_EQ(place.top, 0);
  EXPECT_EQ(place.bottom, screenHeight());
}

TEST_F(Geometry, OfALowerScreenIsPulledUpOnly) {
  startWindow();
  const LONG lowest = height(window().rectangle());
  endWindow();
  storePlace(30, screenHeight(), static_cast<int>(lowest));
  storeScreen(screenWidth(), screenHeight() + 200);
  startWindow();
  EXPECT_EQ(window().rectangle().left, 30);
  EXPECT_EQ(window().rectangle().bottom, screenHeight());
  EXPECT_EQ(height(window().rectangle()), lowest);
}

TEST_F(Geometry, OnAScreenThatDidNotShrinkIsUsedAsItIs) {
  startWindow();
  const LONG lowest = height(window().rectangle());
  endWindow();
  storePlace(screenWidth() - 100, 40, static_cast<int>(lowest));
  storeScreen(screenWidth() - 200, screenHeight());
  startWindow();
  EXPECT_EQ(window().rectangle().left, screenWidth() - 100);
  EXPECT_EQ(window().rectangle().top, 40);
}

TEST_F(Geometry, TheWindowBecomesNeitherNarrowerNorWiderNorLower) {
  startWindow();
  const RECT first = window().rectangle();
  resize(width(first) - 100, height(first) - 100);
  EXPECT_EQ(width(window().rectangle()), width(first));
  EXPECT_EQ(height(window().rectangle()), height(first));
  resize(width(first) + 100, height(first));
  EXPECT_EQ(width(window().rectangle()), width(first));
}

TEST_F(Geometry, TheListsTakeTheAddedHeight) {
  startWindow();
  const RECT first = window().rectangle();
  const LONG routersBefore = height(window().place(IDC_ROUTERS));
  const LONG packagesBefore = height(window().place(IDC_PACKAGES));
  resize(width(first), height(first) + kAdded);
  const LONG routersAdded = height(window().place(IDC_ROUTERS)) - routersBefore;
  const LONG packagesAdded = height(window().place(IDC_PACKAGES)) - packagesBefore;
  EXPECT_EQ(routersAdded + packagesAdded, kAdded);
  EXPECT_GE(routersAdded, 0);
  EXPECT_GE(packagesAdded, 0);
}

TEST_F(Geometry, TheStatusBarStaysAtTheBottom) {
  startWindow();
  const RECT first = window().rectangle();
  resize(width(first), height(first) + kAdded);
  RECT bar = window().statusBarPlace();
  RECT area{};
  GetClientRect(window().handle(), &area);
  EXPECT_EQ(bar.bottom, area.bottom);
  EXPECT_EQ(width(bar), width(area));
}

TEST_F(Geometry, NothingIsCutOffAtTheWindowsEdge) {
  startWindow();
  RECT area{};
  GetClientRect(window().handle(), &area);
  area.bottom = window().statusBarPlace().top;
  for (const int id :
       {IDC_ROUTERS_GROUP, IDC_PACKAGES_GROUP, IDC_ROUTERS, IDC_PACKAGES, IDC_SHOW_HELP, IDC_CANCEL,
        IDC_CHOOSE_SCRIPT, IDC_SELECT_NONE, IDC_BROWSE, IDC_PROGRESS}) {
    const RECT place = window().place(id);
    EXPECT_GE(place.left, area.left) << "control " << id;
    EXPECT_LE(place.right, area.right) << "control " << id;
    EXPECT_LE(place.bottom, area.bottom) << "control " << id;
  }
}

}  // namespace
}  // namespace omniset::test
