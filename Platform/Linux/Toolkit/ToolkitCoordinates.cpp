#include "Platform/Linux/Toolkit/ToolkitCoordinates.h"

#include <QPointF>
#include <cmath>

namespace platform::linux::toolkit {

namespace {

// The origin of the points in Qt's coordinates: the bottom-left corner of the primary screen.
QPointF originOfPoints(std::span<const xcb::ScreenGeometry> screens) {
  if (screens.empty()) return {0, 0};
  const xcb::ScreenGeometry& primary = screens.front();
  return {static_cast<double>(primary.pixels.x), primary.pixels.y + primary.points.height()};
}

int up(double value) {
  constexpr double noise = 1e-6;  // from dividing by a scale factor
  return static_cast<int>(std::ceil(value - noise));
}

}  // namespace

QRect toToolkit(const Rect& points, std::span<const xcb::ScreenGeometry> screens) {
  const QPointF origin = originOfPoints(screens);
  const int left = static_cast<int>(std::lround(origin.x() + points.minX()));
  const int top = static_cast<int>(std::lround(origin.y() - points.maxY()));
  return {left, top, up(points.width()), up(points.height())};
}

}  // namespace platform::linux::toolkit
