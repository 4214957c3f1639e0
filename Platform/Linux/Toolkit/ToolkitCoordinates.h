// From points to the coordinates that Qt gives windows.
//
// Qt also measures in points, but with y down, and every screen's top-left corner stays where it is in device pixels.
// Threads: pure functions.
#pragma once

#include <QRect>
#include <span>

#include "Platform/Linux/Xcb/Coordinates.h"

namespace platform::linux::toolkit {

// The first screen is the primary one. In whole numbers: the smallest rectangle that contains the given one and keeps
// its top-left corner.
[[nodiscard]] QRect toToolkit(const Rect& points, std::span<const xcb::ScreenGeometry> screens);

}  // namespace platform::linux::toolkit
