// Notices that the background of the root window is another one, which no event tells: a program may set it without
// leaving word in the properties that setters of wallpapers use.
//
// A window beyond the edge of the screen inherits the background. Asked to clear itself it shows the one of the moment,
// and a sample of that is compared with the last. Nobody sees it, and nobody is sent an event.
// Threads: that of its connection.
// Ownership: RAII; the connection outlives it.
// Failure: where there is no sample, no change is noticed. A change that the sample does not show is missed.
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
  // Since the last call or the making. Waits for one answer of the server.
  [[nodiscard]] bool hasChanged();

 private:
  [[nodiscard]] std::vector<std::uint8_t> sample();

  xcb::Connection& connection_;
  xcb_window_t window_;
  xcb_pixmap_t pixels_;
  std::vector<std::uint8_t> last_;
};

}  // namespace platform::linux::compositor
