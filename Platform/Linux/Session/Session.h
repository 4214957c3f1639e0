// The kind of session that the program runs in.
//
// X11 programs also start in a Wayland session, on the X server that it keeps for them. But that server has only the
// windows of X11 programs, and a copy of its screen would miss all others.
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

inline constexpr const char* waylandSentence =
    "This is a Wayland session, and the live style needs X11: log in to a session on X.Org, or use the solid cover.";

}  // namespace platform::linux::session
