// A still picture of a part of the screen as it looks now, for a window that has to look transparent where nothing
// composites. The live path never reads the screen.
//
// Threads: that of the connection; waits for the server. Units and axes: device pixels in root coordinates. Whatever
// lies outside the screen is black.
#pragma once

#include <QImage>

#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Linux/Xcb/Coordinates.h"

namespace platform::linux::toolkit {

// Null when the screen cannot be read, or not at 32 bits per pixel.
[[nodiscard]] QImage grabScreen(xcb::Connection& connection, const xcb::PixelRect& part);

}  // namespace platform::linux::toolkit
