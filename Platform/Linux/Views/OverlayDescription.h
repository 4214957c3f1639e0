// From a tree of views to what a click-through window shows.
//
// Threads: main thread only; pure.
#pragma once

#include "Platform/Linux/Views/OverlayContent.h"
#include "Platform/Linux/Views/ViewNode.h"

namespace platform::linux::views {

// Such a window shows one of each: of several visible ones, the topmost counts. Hidden views and their subviews do not
// count.
[[nodiscard]] OverlayContent describe(const ViewNode& root);

}  // namespace platform::linux::views
