// The one place where the application's points become device pixels and back.
//
// Points: origin at the bottom-left corner of the primary screen, y up. Device pixels: those of the X root window,
// origin at its top-left corner, y down. The toolkit keeps the top-left corner of every screen at its place in pixels
// and divides only the screen's size by its scale factor. Points do the same, so screens of different scale never
// overlap in points but may have gaps between them.
// Threads: pure functions of plain values.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>

#include "Platform/Geometry.h"

namespace platform::linux::xcb {

// Device pixels in root coordinates, half-open.
struct PixelRect {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;

  [[nodiscard]] std::int32_t right() const { return x + width; }
  [[nodiscard]] std::int32_t bottom() const { return y + height; }
  [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }
  friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

// Empty (all zero) when they do not overlap.
[[nodiscard]] inline PixelRect intersection(const PixelRect& a, const PixelRect& b) {
  const std::int32_t left = std::max(a.x, b.x);
  const std::int32_t top = std::max(a.y, b.y);
  const std::int32_t right = std::min(a.right(), b.right());
  const std::int32_t bottom = std::min(a.bottom(), b.bottom());
  if (left >= right || top >= bottom) return {};
  return {left, top, right - left, bottom - top};
}

// One screen in both spaces.
struct ScreenGeometry {
  PixelRect pixels;
  double scale = 1;  // pixels per point
  Rect points;
  friend bool operator==(const ScreenGeometry&, const ScreenGeometry&) = default;
};

// Fills in `points` from `pixels` and `scale`; the first screen is the primary one.
void placeInPoints(std::span<ScreenGeometry> screens);

// Uses the screen that contains the rectangle's centre, else the nearest one. Edges are rounded, not sizes, so that
// neighbours in points stay neighbours in pixels. Without any screen, one point is one pixel.
[[nodiscard]] PixelRect toPixels(const Rect& points, std::span<const ScreenGeometry> screens);
// Where to place a window that shows a capture of the same rectangle pixel for pixel: corner and size are rounded, as
// the capture's are, not the edges.
[[nodiscard]] PixelRect toCapturedPixels(const Rect& points, std::span<const ScreenGeometry> screens);
// The part of one screen that a capture of `source` shows in frames of this size.
[[nodiscard]] PixelRect capturedPixels(const DisplayRect& source, std::int64_t width, std::int64_t height,
                                       const ScreenGeometry& screen);
// Pixels per point at that place.
[[nodiscard]] double scaleAt(const Rect& points, std::span<const ScreenGeometry> screens);
[[nodiscard]] Rect toPoints(const PixelRect& pixels, std::span<const ScreenGeometry> screens);
// The position of a pointer that is on this pixel. The pixel's corner would not do: with y up, the corners of a
// screen's topmost row lie outside the screen.
[[nodiscard]] Point middleOfPixel(std::int32_t x, std::int32_t y, std::span<const ScreenGeometry> screens);

}  // namespace platform::linux::xcb
