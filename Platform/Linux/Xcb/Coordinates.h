// The one place where the application's points become device pixels and back.
//
// Points: origin at the bottom-left corner of the primary screen, y up. Device pixels: the X root window's own, origin
// at its top-left corner, y down. The toolkit keeps the top-left corner of every screen at its place in pixels and
// divides only the screen's size by its scale factor; points follow it, so screens of different scale never overlap in
// points but may have gaps between them. Threads: pure functions of plain values.
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

// Empty (all zero) when they do not meet.
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

// By the screen that holds the rectangle's centre, else the nearest one. Edges are rounded, not sizes, so that
// neighbours in points stay neighbours in pixels. Without any screen, one point is one pixel.
[[nodiscard]] PixelRect toPixels(const Rect& points, std::span<const ScreenGeometry> screens);
// Where a window goes that shows a capture of the same rectangle pixel by pixel: its corner and its size are rounded,
// as those of the capture are, and not its edges.
[[nodiscard]] PixelRect toCapturedPixels(const Rect& points, std::span<const ScreenGeometry> screens);
// The part of one screen that a capture of `source` shows, in frames of this size.
[[nodiscard]] PixelRect capturedPixels(const DisplayRect& source, std::int64_t width, std::int64_t height,
                                       const ScreenGeometry& screen);
// Pixels per point there.
[[nodiscard]] double scaleAt(const Rect& points, std::span<const ScreenGeometry> screens);
[[nodiscard]] Rect toPoints(const PixelRect& pixels, std::span<const ScreenGeometry> screens);
// Where the pointer is that stands on this pixel. Its corner would not do: with y up, the corners of a screen's topmost
// row lie outside of the screen.
[[nodiscard]] Point middleOfPixel(std::int32_t x, std::int32_t y, std::span<const ScreenGeometry> screens);

}  // namespace platform::linux::xcb
