// The nearest thing to a settings pane for screen capture on each desktop.
//
// Threads: pure function.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform::linux::session {

// Commands (program and arguments) to try in this order, those of the running desktop first. `currentDesktop`: names
// separated by colons, as in XDG_CURRENT_DESKTOP.
[[nodiscard]] std::vector<std::vector<std::string>> settingsPrograms(std::string_view currentDesktop);

}  // namespace platform::linux::session
