// Mouse moves on a simulated desktop.
#pragma once

#include <memory>

#include "Platform/Simulated/Windows.h"

namespace quillfade {

inline platform::Point inWindow(const platform::simulated::WindowState& window, platform::Point point) {
  return {point.x - window.frame.origin.x, point.y - window.frame.origin.y};
}

// Presses at one point and releases at another, in global points. As on a real desktop, the window under the press gets
// all the events.
inline void drag(const platform::simulated::Windows& windows, platform::Point from, platform::Point to) {
  const auto window = windows.clickTarget(from);
  if (!window || !window->contentView) return;
  const auto responder = window->contentView->responder();
  if (!responder) return;
  responder->mouseDown(inWindow(*window, from));
  responder->mouseDragged(inWindow(*window, to));
  responder->mouseUp(inWindow(*window, to));
}

// Presses and releases without moving.
inline void click(const platform::simulated::Windows& windows, platform::Point point) {
  const auto window = windows.clickTarget(point);
  if (!window || !window->contentView) return;
  const auto responder = window->contentView->responder();
  if (!responder) return;
  responder->mouseDown(inWindow(*window, point));
  responder->mouseUp(inWindow(*window, point));
}

}  // namespace quillfade
