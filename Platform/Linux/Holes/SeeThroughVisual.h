// The kind of window through which a compositor lets what lies beneath be seen.
//
// Threads: that of the connection.
#pragma once

#include <xcb/xcb.h>

#include <optional>

#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::holes {

// Of depth 32. Absent when the server has none.
[[nodiscard]] std::optional<xcb_visualid_t> seeThroughVisual(const xcb::Connection& connection);

}  // namespace platform::linux::holes
