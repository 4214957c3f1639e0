// The windows on screen as a table, for a person who wonders why one is, or is not, left out of a live copy.
#pragma once

#include <optional>
#include <string>

#include "Platform/Platform.h"

namespace quillfade {

// Judged against the screen that a mirror over `region` would show, or else the main screen. One line per window;
// control characters in a name are escaped, so that no name can forge a line.
[[nodiscard]] std::string windowTable(const platform::ShareableContent& content,
                                      const std::optional<platform::Rect>& region, platform::Platform& platform);

}  // namespace quillfade
