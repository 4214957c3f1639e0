// Examines an X11 desktop, one finding at a time.
//
// Threads: main thread. Blocks for the replies of the display server and of the session bus.
#pragma once

#include <string>
#include <vector>

#include "Platform/Examination.h"
#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux {

// Without a display, only what the session says of itself counts.
[[nodiscard]] Finding sessionFinding(const xcb::Connection* connection);
[[nodiscard]] std::vector<Finding> extensionFindings(const xcb::Connection& connection);
[[nodiscard]] Finding compositingFinding(xcb::Connection& connection);
[[nodiscard]] Finding busFinding();
// Without a display, only the session bus is asked.
[[nodiscard]] Finding trayFinding(xcb::Connection* connection);
[[nodiscard]] Finding settingsFinding(const std::string& path);
[[nodiscard]] Finding logFinding(const std::string& path);
// In a Wayland session, the keys of an X server are no use, and only whether the desktop gives keys can be told.
[[nodiscard]] std::vector<HotKeyAnswer> tryHotKeys(xcb::Connection& connection, const std::vector<HotKeyTrial>& trials);

}  // namespace platform::linux
