// Whether the desktop gives programs keys at all.
#pragma once

namespace platform::linux::shortcuts {

// Asks on the session bus, and starts the portal if it does not run: blocks for a few seconds at most. Binds nothing.
[[nodiscard]] bool desktopGivesKeys();

}  // namespace platform::linux::shortcuts
