#include "Platform/Linux/Xcb/Coordinates.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "Platform/Linux/Toolkit/ToolkitCoordinates.h"

using platform::Point;
using platform::Rect;
using namespace platform::linux;
using namespace platform::linux::xcb;

namespace {

std::vector<ScreenGeometry> placed(std::vector<ScreenGeometry> screens) {
  placeInPoints(screens);
  return screens;
}

}  // namespace

TEST(Coordinates, ThePrimaryScreenHasItsBottomLeftCornerAtTheOrigin) {
  const auto screens = placed({{{0, 0, 1920, 1080}, 1, {}}});
  EXPECT_EQ(screens[0].points, (Rect{{0, 0}, {1920, 1080}}));
}

TEST(Coordinates, ScreensToTheLeftAndBelowHaveNegativeCoordinates) {
  const auto screens = placed({{{1280, 0, 1920, 1080}, 1, {}}, {{0, 200, 1280, 1024}, 1, {}}});
  EXPECT_EQ(screens[0].points, (Rect{{0, 0}, {1920, 1080}}));
  EXPECT_EQ(screens[1].points, (Rect{{-1280, -144}, {1280, 1024}}));
}

TEST(Coordinates, AScreenOfAnotherScaleKeepsItsTopLeftCornerAndLeavesAGap) {
  const auto screens = placed({{{0, 0, 3840, 2160}, 2, {}}, {{3840, 0, 1920, 1080}, 1, {}}});
  EXPECT_EQ(screens[0].points, (Rect{{0, 0}, {1920, 1080}}));
  EXPECT_EQ(screens[1].points, (Rect{{3840, 0}, {1920, 1080}}));
}

TEST(Coordinates, EveryScreenGivesBackItsOwnPixelsWithFractionalScaleFactors) {
  for (const double scale : {1.0, 1.1, 1.25, 1.333, 1.5, 1.75, 2.0, 2.5, 3.0}) {
    const auto screens =
        placed({{{1366, 300, 1366, 768}, scale, {}}, {{0, 0, 1366, 768}, 1, {}}, {{2732, -500, 2560, 1440}, 1.5, {}}});
    for (const ScreenGeometry& screen : screens) {
      EXPECT_EQ(toPixels(screen.points, screens), screen.pixels) << scale;
      const Rect points = toPoints(screen.pixels, screens);
      EXPECT_NEAR(points.minX(), screen.points.minX(), 1e-9);
      EXPECT_NEAR(points.minY(), screen.points.minY(), 1e-9);
      EXPECT_NEAR(points.width(), screen.points.width(), 1e-9);
      EXPECT_NEAR(points.height(), screen.points.height(), 1e-9);
    }
  }
}

TEST(Coordinates, ARectangleIsTurnedUpsideDownInsideItsScreen) {
  const auto screens = placed({{{0, 0, 1920, 1080}, 1, {}}});
  EXPECT_EQ(toPixels({{240, 240}, {520, 340}}, screens), (PixelRect{240, 500, 520, 340}));
  EXPECT_EQ(toPoints({240, 500, 520, 340}, screens), (Rect{{240, 240}, {520, 340}}));
}

TEST(Coordinates, NeighboursInPointsStayNeighboursInPixels) {
  const auto screens = placed({{{0, 0, 2560, 1440}, 1.25, {}}});
  for (double edge = 100; edge < 140; edge += 0.37) {
    const PixelRect left = toPixels({{10, 10}, {edge - 10, 50}}, screens);
    const PixelRect right = toPixels({{edge, 10}, {80, 50}}, screens);
    EXPECT_EQ(left.right(), right.x) << edge;
    const PixelRect lower = toPixels({{10, 10}, {50, edge - 10}}, screens);
    const PixelRect upper = toPixels({{10, edge}, {50, 80}}, screens);
    EXPECT_EQ(upper.bottom(), lower.y) << edge;
  }
}

TEST(Coordinates, EveryPixelRectangleSurvivesTheWayToPointsAndBack) {
  const auto screens = placed({{{0, 0, 1920, 1080}, 1.5, {}}, {{1920, 0, 2560, 1440}, 1.25, {}}});
  for (int offset = 0; offset < 200; offset += 7) {
    const PixelRect first{offset, 2 * offset, 301, 203};
    const PixelRect second{1920 + offset, offset, 411, 97};
    EXPECT_EQ(toPixels(toPoints(first, screens), screens), first);
    EXPECT_EQ(toPixels(toPoints(second, screens), screens), second);
  }
}

TEST(Coordinates, ARectangleInAGapBelongsToTheNearestScreen) {
  const auto screens = placed({{{0, 0, 3840, 2160}, 2, {}}, {{3840, 0, 1920, 1080}, 1, {}}});
  EXPECT_EQ(toPixels({{2000, 500}, {10, 10}}, screens), (PixelRect{4000, 1140, 20, 20}));  // scaled like the first one
  EXPECT_EQ(toPixels({{3700, 500}, {10, 10}}, screens), (PixelRect{3700, 570, 10, 10}));   // like the second one
}

TEST(Coordinates, TheMiddleOfAPixelLiesOnItsOwnScreenAndOnNoOther) {
  for (const double scale : {1.0, 1.25, 1.333, 1.5, 2.0, 3.0}) {
    for (const auto& screens : {placed({{{0, 0, 1920, 1080}, scale, {}}, {{1920, 0, 1280, 800}, 1, {}}}),
                                placed({{{0, 1080, 1366, 768}, 1, {}}, {{0, 0, 1920, 1080}, scale, {}}}),
                                placed({{{1280, 200, 1366, 768}, scale, {}},
                                        {{0, 0, 1280, 1024}, scale, {}},
                                        {{1280, 968, 800, 600}, 1, {}}})}) {
      for (const ScreenGeometry& screen : screens) {
        const PixelRect& pixels = screen.pixels;
        for (const int x : {pixels.x, pixels.x + pixels.width / 2, pixels.right() - 1}) {
          for (const int y : {pixels.y, pixels.y + pixels.height / 2, pixels.bottom() - 1}) {
            const Point middle = middleOfPixel(x, y, screens);
            for (const ScreenGeometry& any : screens)
              EXPECT_EQ(any.points.contains(middle), any == screen) << scale << ": " << x << "," << y;
          }
        }
      }
    }
  }
}

TEST(Coordinates, WithoutAnyScreenOnePointIsOnePixel) {
  EXPECT_EQ(toPixels({{10, -50}, {30, 20}}, {}), (PixelRect{10, 30, 30, 20}));
  EXPECT_EQ(toPoints({10, 30, 30, 20}, {}), (Rect{{10, -50}, {30, 20}}));
}

TEST(Coordinates, NumbersThatNoScreenHasStayFinite) {
  const auto screens = placed({{{0, 0, 1920, 1080}, 1, {}}});
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(toPixels({{nan, nan}, {nan, nan}}, screens), (PixelRect{0, 0, 0, 0}));
  EXPECT_GT(toPixels({{0, 0}, {infinity, 1e300}}, screens).width, 1 << 20);
}

TEST(Coordinates, TheCommonPartOfRectanglesThatOnlyTouchIsEmpty) {
  EXPECT_EQ(intersection(PixelRect{0, 0, 10, 10}, PixelRect{5, 5, 10, 10}), (PixelRect{5, 5, 5, 5}));
  EXPECT_EQ(intersection(PixelRect{0, 0, 10, 10}, PixelRect{10, 0, 10, 10}), PixelRect{});
  EXPECT_EQ(intersection(PixelRect{0, 0, 10, 10}, PixelRect{20, 20, 5, 5}), PixelRect{});
}

TEST(ToolkitCoordinates, AScreenLiesWhereTheToolkitHasIt) {
  const auto screens = placed({{{1280, 0, 3840, 2160}, 2, {}}, {{0, 100, 1280, 1024}, 1, {}}});
  EXPECT_EQ(toolkit::toToolkit(screens[0].points, screens), QRect(1280, 0, 1920, 1080));
  EXPECT_EQ(toolkit::toToolkit(screens[1].points, screens), QRect(0, 100, 1280, 1024));
}

TEST(ToolkitCoordinates, AWindowIsNeverSmallerThanItsScreen) {
  const auto screens = placed({{{0, 0, 1366, 768}, 1.75, {}}});
  EXPECT_EQ(toolkit::toToolkit(screens[0].points, screens), QRect(0, 0, 781, 439));
}
