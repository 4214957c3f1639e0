// The screens of the desktop and their changes.
//
// Threads: main thread only; observers are called there.
// Units and axes: points in the global space (origin at the bottom-left corner of the primary screen, y up).
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "Platform/Geometry.h"

namespace platform {

struct Screen {
  Rect frame;
  // Identifies the display to the capture service; absent when the desktop gives the screen no number.
  std::optional<std::uint32_t> displayID;
  double backingScaleFactor = 1;  // pixels per point
  friend bool operator==(const Screen&, const Screen&) = default;
};

class Screens {
 public:
  virtual ~Screens() = default;
  // All screens in the desktop's order; empty when there is none.
  [[nodiscard]] virtual std::vector<Screen> all() const = 0;
  // The screen with the keyboard focus, or the nearest thing the desktop has.
  [[nodiscard]] virtual std::optional<Screen> main() const = 0;
  // The pointer's position in the global space.
  [[nodiscard]] virtual Point mouseLocation() const = 0;
  // Called after a screen was added, removed, moved, resized or rescaled, once per change of the configuration, for the
  // life of the process.
  virtual void observeChanges(std::function<void()> observer) = 0;
};

}  // namespace platform
