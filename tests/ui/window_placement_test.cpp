#include "ui/workflow/window_placement.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>

namespace omniset {

static void PrintTo(const WindowRectangle& place, std::ostream* out) {
  *out << place.x << "," << place.y << " " << place.width << "x" << place.height;
}

namespace test {
namespace {

constexpr ScreenSize kScreen{800, 600};

WindowGeometry onLargerScreen(std::int32_t x, std::int32_t y, std::int32_t height) {
  return {x, y, height, 1280, 1024};
}

TEST(WindowPlacement, FirstRunIsNearTheCorner) {
  WindowGeometry first;
  first.height = 400;
  EXPECT_EQ(placedWindow(first, 500, kScreen), (WindowRectangle{20, 20, 500, 400}));
}

TEST(WindowPlacement, NegativeCoordinatesAreZero) {
  EXPECT_EQ(placedWindow({-5, -1, 400, 0, 0}, 500, kScreen), (WindowRectangle{0, 0, 500, 400}));
}

TEST(WindowPlacement, SameScreenLeavesThePlaceEvenOffScreen) {
  EXPECT_EQ(placedWindow({700, 550, 900, 800, 600}, 500, kScreen),
            (WindowRectangle{700, 550, 500, 900}));
}

TEST(WindowPlacement, LargerScreenLeavesThePlace) {
  EXPECT_EQ(placedWindow({700, 550, 400, 640, 480}, 500, kScreen),
            (WindowRectangle{700, 550, 500, 400}));
}

TEST(WindowPlacement, SmallerScreenPullsTheWindowInside) {
  EXPECT_EQ(placedWindow(onLargerScreen(700, 500, 400), 500, kScreen),
            (WindowRectangle{300, 200, 500, 400}));
}

TEST(WindowPlacement, SmallerScreenBoundsTheHeight) {
  EXPECT_EQ(placedWindow(onLargerScreen(100, 100, 1000), 500, kScreen),
            (WindowRectangle{100, 0, 500, 600}));
}

TEST(WindowPlacement, SmallerScreenLeavesAWindowThatFits) {
  EXPECT_EQ(placedWindow(onLargerScreen(300, 200, 400), 500, kScreen),
            (WindowRectangle{300, 200, 500, 400}));
}

TEST(WindowPlacement, OneSmallerDimensionIsEnough) {
  const WindowRectangle inside{300, 200, 500, 400};
  EXPECT_EQ(placedWindow({700, 500, 400, 801, 600}, 500, kScreen), inside);
  EXPECT_EQ(placedWindow({700, 500, 400, 800, 601}, 500, kScreen), inside);
}

TEST(WindowPlacement, WindowWiderThanTheScreenEndsAtItsRightEdge) {
  EXPECT_EQ(placedWindow(onLargerScreen(100, 0, 400), 900, kScreen),
            (WindowRectangle{-100, 0, 900, 400}));
}

TEST(WindowPlacement, NumbersOfAnySizeDoNotOverflow) {
  EXPECT_EQ(placedWindow(onLargerScreen(INT32_MAX, INT32_MAX, INT32_MAX), 500, kScreen),
            (WindowRectangle{300, 0, 500, 600}));
  EXPECT_EQ(placedWindow(onLargerScreen(INT32_MIN, INT32_MAX, INT32_MIN), 500, kScreen),
            (WindowRectangle{0, INT32_MAX, 500, INT32_MIN}));
}

}  // namespace
}  // namespace test
}  // namespace omniset
