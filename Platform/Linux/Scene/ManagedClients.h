// Finds the windows that window managers put into their frames.
//
// A frame and its decoration belong to the window manager; the window inside belongs to another client, as its id
// shows. Some window managers put a wrapper between the two.
// Threads: that of the connection. Failure: a window that is gone has nothing inside.
#pragma once

#include <xcb/xcb.h>

#include <span>
#include <vector>

#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::scene {

inline constexpr xcb_window_t noClient = XCB_WINDOW_NONE;

// For each top-level, the window of another client inside it, or `noClient`. At most two round trips, however many
// windows there are.
[[nodiscard]] std::vector<xcb_window_t> managedClients(xcb::Connection& connection,
                                                       std::span<const xcb_window_t> topLevels);

}  // namespace platform::linux::scene
