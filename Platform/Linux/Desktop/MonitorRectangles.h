// The monitors in the X server's own words.
//
// Threads: main thread only; asks the server.
#pragma once

#include <optional>
#include <vector>

#include "Platform/Linux/Coordinates.h"

namespace platform::x11 {

// All active monitors; empty when every one is gone. Absent when there is no X server or it does not know monitors.
[[nodiscard]] std::optional<std::vector<PixelRect>> monitorRectangles();

}  // namespace platform::x11
