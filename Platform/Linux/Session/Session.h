// The kind of session that the program runs in.
//
// In a Wayland session, the X server that it keeps for X11 programs has only their windows: a copy of its screen would
// miss all others. So nothing is copied there, but the ink of X11 programs is taken away.
#pragma once

#include <string>

#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::session {

// Judges by what the session says of itself: `XDG_SESSION_TYPE`, or else whether there is a Wayland display.
[[nodiscard]] bool isWaylandSession();
// Also true if the X server is one that a Wayland session keeps.
[[nodiscard]] bool isWaylandSession(const xcb::Connection& connection);
// "x11", "wayland", "tty" and so on; our guess if the session says nothing.
[[nodiscard]] std::string sessionType();

// For a Wayland session that keeps no X server.
inline constexpr const char* waylandSentence =
    "This is a Wayland session without Xwayland, the X server that Quillfade needs there: install it, or log in to a "
    "session on X.Org.";

}  // namespace platform::linux::session
