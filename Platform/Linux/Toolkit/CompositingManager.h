// Who composites the windows of the screen: a program on X11, the compositor of a Wayland session.
//
// Threads: that of the connection; waits for a few replies.
#pragma once

#include <optional>
#include <string>

#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::toolkit {

// Its name, which may be empty; absent when nobody does.
[[nodiscard]] std::optional<std::string> compositingManager(xcb::Connection& connection);

}  // namespace platform::linux::toolkit
