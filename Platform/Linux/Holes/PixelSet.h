// Sets of pixels, as lists of rectangles.
//
// Threads: pure functions of plain values. Units and axes: device pixels, y down; whose origin counts, the caller says.
// The rectangles of a result do not overlap each other if those that went in do not.
#pragma once

#include <span>
#include <vector>

#include "Platform/Linux/Xcb/Region.h"

namespace platform::linux::holes {

using PixelSet = std::vector<xcb::PixelRect>;

[[nodiscard]] PixelSet without(PixelSet set, std::span<const xcb::PixelRect> holes);
[[nodiscard]] PixelSet common(std::span<const xcb::PixelRect> set, const xcb::PixelRect& bounds);
[[nodiscard]] PixelSet moved(std::span<const xcb::PixelRect> set, std::int32_t x, std::int32_t y);
// Whether both hold the same pixels, however they are cut into rectangles.
[[nodiscard]] bool holdSame(std::span<const xcb::PixelRect> a, std::span<const xcb::PixelRect> b);
[[nodiscard]] std::vector<xcb_rectangle_t> toRectangles(std::span<const xcb::PixelRect> set);

}  // namespace platform::linux::holes
