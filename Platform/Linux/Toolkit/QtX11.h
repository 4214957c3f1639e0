// Qt's own connection to the X server.
//
// Threads: main thread only. The connection is Qt's: never close it, never wait for events on it.
#pragma once

#include <xcb/xcb.h>

namespace platform::linux::toolkit {

// Null when Qt does not run on an X server.
[[nodiscard]] xcb_connection_t* qtConnection();
// Of the first screen.
[[nodiscard]] xcb_window_t rootWindow(xcb_connection_t* connection);
// `XCB_NONE` when the server cannot say.
[[nodiscard]] xcb_atom_t atomNamed(xcb_connection_t* connection, const char* name);
// The owner of a selection, such as a compositing manager's; `XCB_NONE` without one.
[[nodiscard]] xcb_window_t selectionOwner(xcb_connection_t* connection, const char* selection);

}  // namespace platform::linux::toolkit
