// What the windows that cover the screen have in common.
#pragma once

#include "Platform/Windows.h"

namespace quillfade {

// Borderless, above everything, on every space, beside full-screen windows, and invisible to the pointer. The caller
// chooses background and sharing.
[[nodiscard]] inline platform::WindowAttributes coverWindowAttributes(const platform::Windows& windows) {
  namespace behavior = platform::collectionbehavior;
  return {
      .contentRect = {},
      .style = platform::WindowStyle::borderless,
      .backing = platform::BackingStore::buffered,
      .isDeferred = false,
      .level = windows.shieldingLevel(),
      .collectionBehavior =
          behavior::canJoinAllSpaces | behavior::stationary | behavior::ignoresCycle | behavior::fullScreenAuxiliary,
      .ignoresMouseEvents = true,
      .hasShadow = false,
      .isOpaque = true,
      .isReleasedWhenClosed = false,
      .isMovable = false,
      .animationBehavior = platform::AnimationBehavior::none,
  };
}

}  // namespace quillfade
