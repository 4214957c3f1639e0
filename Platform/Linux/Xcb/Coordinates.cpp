#include "Platform/Linux/Xcb/Coordinates.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace platform::linux::xcb {

namespace {

// Far beyond any screen, yet small enough that the sum of two stays in range.
constexpr double farthestPixel = 1 << 29;

std::int32_t rounded(double value) {
  if (std::isnan(value)) return 0;
  return static_cast<std::int32_t>(std::lround(std::clamp(value, -farthestPixel, farthestPixel)));
}

double squaredDistance(Point point, double left, double bottom, double right, double top) {
  const double x = point.x - std::clamp(point.x, left, right);
  const double y = point.y - std::clamp(point.y, bottom, top);
  return x * x + y * y;
}

// `area` returns a screen's rectangle in the space of `center`.
template <typename Area>
const ScreenGeometry* screenAt(Point center, std::span<const ScreenGeometry> screens, Area area) {
  const ScreenGeometry* nearest = nullptr;
  double least = std::numeric_limits<double>::infinity();
  for (const ScreenGeometry& screen : screens) {
    const Rect rect = area(screen);
    if (rect.contains(center)) return &screen;
    const double distance = squaredDistance(center, rect.minX(), rect.minY(), rect.maxX(), rect.maxY());
    if (!nearest || distance < least) {
      nearest = &screen;
      least = distance;
    }
  }
  return nearest;
}

Rect asRect(const PixelRect& pixels) {
  return {{static_cast<double>(pixels.x), static_cast<double>(pixels.y)},
          {static_cast<double>(pixels.width), static_cast<double>(pixels.height)}};
}

constexpr ScreenGeometry noScreen{};

}  // namespace

void placeInPoints(std::span<ScreenGeometry> screens) {
  if (screens.empty()) return;
  const ScreenGeometry& primary = screens.front();
  const double originX = primary.pixels.x;
  const double originY = primary.pixels.y + primary.pixels.height / primary.scale;
  for (ScreenGeometry& screen : screens) {
    const Size size{screen.pixels.width / screen.scale, screen.pixels.height / screen.scale};
    screen.points = {{screen.pixels.x - originX, originY - (screen.pixels.y + size.height)}, size};
  }
}

PixelRect toPixels(const Rect& points, std::span<const ScreenGeometry> screens) {
  const ScreenGeometry* found = screenAt(points.center(), screens, [](const auto& screen) { return screen.points; });
  const ScreenGeometry& screen = found ? *found : noScreen;
  const std::int32_t left = rounded(screen.pixels.x + (points.minX() - screen.points.minX()) * screen.scale);
  const std::int32_t right = rounded(screen.pixels.x + (points.maxX() - screen.points.minX()) * screen.scale);
  const std::int32_t top = rounded(screen.pixels.y + (screen.points.maxY() - points.maxY()) * screen.scale);
  const std::int32_t bottom = rounded(screen.pixels.y + (screen.points.maxY() - points.minY()) * screen.scale);
  return {left, top, right - left, bottom - top};
}

PixelRect capturedPixels(const DisplayRect& source, std::int64_t width, std::int64_t height,
                         const ScreenGeometry& screen) {
  return {screen.pixels.x + rounded(source.x * screen.scale), screen.pixels.y + rounded(source.y * screen.scale),
          rounded(static_cast<double>(std::max<std::int64_t>(0, width))),
          rounded(static_cast<double>(std::max<std::int64_t>(0, height)))};
}

PixelRect toCapturedPixels(const Rect& points, std::span<const ScreenGeometry> screens) {
  const ScreenGeometry* found = screenAt(points.center(), screens, [](const auto& screen) { return screen.points; });
  const ScreenGeometry& screen = found ? *found : noScreen;
  return capturedPixels({points.minX() - screen.points.minX(), screen.points.maxY() - points.maxY(), 0, 0},
                        std::llround(points.width() * screen.scale), std::llround(points.height() * screen.scale),
                        screen);
}

double scaleAt(const Rect& points, std::span<const ScreenGeometry> screens) {
  const ScreenGeometry* found = screenAt(points.center(), screens, [](const auto& screen) { return screen.points; });
  return found ? found->scale : noScreen.scale;
}

Rect toPoints(const PixelRect& pixels, std::span<const ScreenGeometry> screens) {
  const ScreenGeometry* found =
      screenAt(asRect(pixels).center(), screens, [](const auto& screen) { return asRect(screen.pixels); });
  const ScreenGeometry& screen = found ? *found : noScreen;
  const Size size{pixels.width / screen.scale, pixels.height / screen.scale};
  return {{screen.points.minX() + (pixels.x - screen.pixels.x) / screen.scale,
           screen.points.maxY() - (pixels.y - screen.pixels.y) / screen.scale - size.height},
          size};
}

Point middleOfPixel(std::int32_t x, std::int32_t y, std::span<const ScreenGeometry> screens) {
  return toPoints({x, y, 1, 1}, screens).center();
}

}  // namespace platform::linux::xcb
