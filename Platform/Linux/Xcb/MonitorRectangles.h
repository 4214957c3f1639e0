// The monitors as the X server reports them.
//
// Threads: that of the connection; waits for the server.
#pragma once

#include <xcb/xcb.h>

#include <optional>
#include <vector>

#include "Platform/Linux/Xcb/Coordinates.h"

namespace platform::linux::xcb {

// All active monitors of the screen with this root window; empty when none is left. Absent when the server does not
// know monitors.
[[nodiscard]] std::optional<std::vector<PixelRect>> monitorRectangles(xcb_connection_t* connection, xcb_window_t root);

}  // namespace platform::linux::xcb
