// Plane geometry shared by the application and every adapter.
//
// Units and axes: points, origin at the bottom-left corner of the primary screen, y up, unless a name says otherwise
// (`DisplayRect`). Rectangles are half-open: they contain their minimum edges but not their maximum edges.
// Threads: plain values, free to use on any thread. Nothing here allocates or fails.
#pragma once

#include <algorithm>
#include <cmath>
#include <optional>

namespace platform {

struct Point {
  double x = 0;
  double y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
  double width = 0;
  double height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
  Point origin;
  Size size;

  // Extents are never negative, even when the size is.
  [[nodiscard]] double width() const { return std::abs(size.width); }
  [[nodiscard]] double height() const { return std::abs(size.height); }
  [[nodiscard]] double minX() const { return std::min(origin.x, origin.x + size.width); }
  [[nodiscard]] double minY() const { return std::min(origin.y, origin.y + size.height); }
  [[nodiscard]] double maxX() const { return std::max(origin.x, origin.x + size.width); }
  [[nodiscard]] double maxY() const { return std::max(origin.y, origin.y + size.height); }
  [[nodiscard]] double midX() const { return origin.x + size.width / 2; }
  [[nodiscard]] double midY() const { return origin.y + size.height / 2; }
  [[nodiscard]] Point center() const { return {midX(), midY()}; }

  [[nodiscard]] bool isEmpty() const { return !(width() > 0 && height() > 0); }
  [[nodiscard]] bool contains(Point point) const {
    return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
  }

  friend bool operator==(const Rect&, const Rect&) = default;
};

// The common part of two rectangles; absent when they do not meet. A shared edge is a common part without area.
[[nodiscard]] inline std::optional<Rect> intersection(const Rect& a, const Rect& b) {
  const double left = std::max(a.minX(), b.minX());
  const double right = std::min(a.maxX(), b.maxX());
  const double bottom = std::max(a.minY(), b.minY());
  const double top = std::min(a.maxY(), b.maxY());
  // Written so that a NaN on any side gives no common part.
  if (!(left <= right && bottom <= top)) return std::nullopt;
  return Rect{{left, bottom}, {right - left, top - bottom}};
}

// The smallest rectangle that holds both.
[[nodiscard]] inline Rect united(const Rect& a, const Rect& b) {
  const double left = std::min(a.minX(), b.minX());
  const double bottom = std::min(a.minY(), b.minY());
  return {{left, bottom}, {std::max(a.maxX(), b.maxX()) - left, std::max(a.maxY(), b.maxY()) - bottom}};
}

// A rectangle in points relative to the top-left corner of one display, y down, as a capture service expects it.
struct DisplayRect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  friend bool operator==(const DisplayRect&, const DisplayRect&) = default;
};

}  // namespace platform
