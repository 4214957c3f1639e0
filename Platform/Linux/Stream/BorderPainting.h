// Blends a border over the content of a window.
//
// Threads: that of the connection. Units and axes: device pixels, origin at the window's top-left corner, y down.
// Failure: a picture that is gone paints nothing.
#pragma once

#include <xcb/render.h>

#include <cstdint>

#include "Platform/Linux/Stream/BorderAppearance.h"
#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::stream {

// Paints within the clip of `target`, a picture of a window of this size.
void blendBorder(xcb::Connection& connection, xcb_render_picture_t target, std::int32_t width, std::int32_t height,
                 const BorderAppearance& border);

}  // namespace platform::linux::stream
