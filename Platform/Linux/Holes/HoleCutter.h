// Makes and closes holes in windows of other programs.
//
// Others change their windows at the same time, so each step looks at the window and changes it while no other client
// is served: one answer of the server long.
// Threads: that of the connection; each call waits for the server. Units and axes: device pixels in the window's own
// coordinates, y down. Ownership: keeps a reference to the connection. What it made outlives it: whoever makes a hole
// closes it. Failure: a window that is gone is passed over.
#pragma once

#include <xcb/render.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <expected>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "Platform/Error.h"
#include "Platform/Linux/Holes/Hole.h"
#include "Platform/Linux/Holes/HoleBook.h"
#include "Platform/Linux/Holes/InkCopy.h"
#include "Platform/Linux/Holes/Patch.h"
#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::holes {

// How long a compositor may take to look at a shape.
inline constexpr std::chrono::milliseconds timeForCompositors{300};

class HoleCutter {
 public:
  // The token tells the holes of this process from those of others.
  HoleCutter(xcb::Connection& connection, std::uint32_t token);

  // Takes the areas of the step out of the window's shape, and nothing that was taken out before. Clears because not
  // every compositor looks at shapes. Absent when the window is gone; an error when the server does not do it.
  [[nodiscard]] std::expected<std::optional<Hole>, Error> cut(const std::optional<Hole>& before,
                                                              const HoleBook::Step& step);
  // Gives the window back what was its own, unless its owner has done so, but for two things that take a moment, and
  // that `finish` does. A window without a shape has its rectangle as one until then, since compositors overlook a step
  // from a shape to none; and a program may not draw again what was cleared. Absent when there is nothing to finish.
  [[nodiscard]] std::optional<Hole> mend(xcb_window_t window, const Hole& hole);
  void finish(xcb_window_t window, const Hole& hole);
  // It is gone.
  void forget(xcb_window_t window) { copies_.erase(window); }

 private:
  struct Look {
    BoundingShape shape;
    xcb::PixelRect bounds;  // with the border
    xcb::PixelRect size;    // without
    std::uint8_t depth = 0;
    xcb_render_pictformat_t format = 0;
    bool hasAlpha = false;
  };

  [[nodiscard]] std::optional<Look> look(xcb_window_t window);
  [[nodiscard]] std::expected<std::optional<Hole>, Error> lostOrGone() const;
  // Nothing is seen or drawn in the areas until the patch is gone.
  [[nodiscard]] std::unique_ptr<Patch> clear(const Hole& hole, xcb_window_t window, const Look& now);
  void setShape(xcb_window_t window, const PixelSet& shape);
  void write(xcb_window_t window, const Hole& hole);
  void erase(xcb_window_t window);
  void nudge(xcb_window_t window, const Look& look);

  xcb::Connection& connection_;
  std::uint32_t token_;
  // Of the windows that were cleared.
  std::map<xcb_window_t, std::unique_ptr<InkCopy>> copies_;
};

// A window that carries a hole, as it is written there.
struct HoledWindow {
  xcb_window_t window = XCB_NONE;
  WrittenHole written;
};
[[nodiscard]] std::vector<HoledWindow> holedWindows(xcb::Connection& connection);

// Closes the holes that another process has left behind: those with this token, or all. Takes a moment if there are
// any.
void closeLeftHoles(xcb::Connection& connection, const std::optional<std::uint32_t>& token);

// The server forgets what it has not read yet of a client that is gone: to be called before the connection may go.
void finishRequests(xcb::Connection& connection);

}  // namespace platform::linux::holes
