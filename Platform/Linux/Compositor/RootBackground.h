// Notices a new background of the root window, which no event announces: a program may set one without updating the
// properties that wallpaper setters use.
//
// A window beyond the edge of the screen inherits the background. When asked to clear itself it shows the current one,
// and a sample of that is compared with the last. Nobody sees the window, and nobody gets an event.
// Threads: that of its connection. Ownership: owns the window; the connection must outlive it.
// Failure: without a sample no change is noticed. A change that the sample does not show is missed.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <vector>

#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::compositor {

class RootBackground {
 public:
  explicit RootBackground(xcb::Connection& connection);
  ~RootBackground();
  RootBackground(const RootBackground&) = delete;
  RootBackground& operator=(const RootBackground&) = delete;

  [[nodiscard]] xcb_window_t window() const { return window_; }
  // Since the last call or the construction. Waits for one reply of the server.
  [[nodiscard]] bool hasChanged();

 private:
  [[nodiscard]] std::vector<std::uint8_t> sample();

  xcb::Connection& connection_;
  xcb_window_t window_;
  xcb_pixmap_t pixels_;
  std::vector<std::uint8_t> last_;
};

}  // namespace platform::linux::compositor
