// Keeps the content of all top-level windows off-screen, where it can be read even beneath other windows.
//
// Threads: that of the connection.
// Lifetime: call it once, on a connection that lives as long as the process: the redirection ends with the connection,
// and ending it loses the hidden content of clients that do not repaint. Failure: an error when the Composite extension
// is missing.
#pragma once

#include <expected>

#include "Platform/Error.h"
#include "Platform/Linux/X11/Connection.h"

namespace platform::x11 {

std::expected<void, Error> redirectSubwindows(Connection& connection);

}  // namespace platform::x11
