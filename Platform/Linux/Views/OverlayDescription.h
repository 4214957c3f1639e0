// From a tree of views to what a click-through window shows.
//
// Threads: main thread only; pure.
#pragma once

#include "Platform/Linux/Views/OverlayContent.h"
#include "Platform/Linux/Views/ViewNode.h"

namespace platform::linux::views {

// Such a window shows one of each: where the tree holds several visible ones, the one that lies on top counts. Hidden
// views count for nothing, nor do their subviews.
[[nodiscard]] OverlayContent describe(const ViewNode& root);

}  // namespace platform::linux::views
