// How a compositing manager shows top-level windows beyond their pixels: how opaque they are, and which part of a
// window manager's frame is meant to be seen.
//
// Frames may have invisible edges: they are there for the pointer to grab, and black where nobody drew. What is seen is
// the program's window inside, grown by the extents that the window manager set on it.
// Threads: that of its connection. Units and axes: device pixels from the top-level's outer top-left corner, y down.
// Ownership: keeps a reference to the connection, which must outlive it.
// Failure: a window that is gone, or says nothing, is opaque and seen as a whole.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Linux/Xcb/Coordinates.h"

namespace platform::linux::compositor {

struct WindowEffect {
  static constexpr std::uint32_t opaque = 0xffffffff;

  std::uint32_t opacity = opaque;
  std::optional<xcb::PixelRect> visiblePart;  // absent: all of it
  friend bool operator==(const WindowEffect&, const WindowEffect&) = default;
};

class WindowEffects {
 public:
  explicit WindowEffects(xcb::Connection& connection);
  ~WindowEffects();
  WindowEffects(const WindowEffects&) = delete;
  WindowEffects& operator=(const WindowEffects&) = delete;

  void follow(xcb_window_t topLevel);
  void forget(xcb_window_t topLevel);

  // The followed top-level whose effect the event may have changed; the next `read` tells.
  [[nodiscard]] std::optional<xcb_window_t> changedBy(const xcb_generic_event_t& event);

  struct Known {
    xcb_window_t topLevel;
    WindowEffect effect;
  };
  // The top-levels that may have changed since the last call. Waits for the server a few times, however many there are,
  // and not at all when there are none.
  [[nodiscard]] std::vector<Known> read();

 private:
  struct Followed {
    bool isStale = true;
    xcb_window_t inner = XCB_NONE;
  };

  void findInnerWindows(std::span<const xcb_window_t> topLevels);
  void select(xcb_window_t window, std::uint32_t events);
  [[nodiscard]] std::optional<xcb_window_t> followedWith(xcb_window_t window) const;

  xcb::Connection& connection_;
  xcb_atom_t opacity_;
  xcb_atom_t frameExtents_;
  std::map<xcb_window_t, Followed> followed_;
  std::map<xcb_window_t, xcb_window_t> topLevelOf_;  // of the windows inside
};

}  // namespace platform::linux::compositor
