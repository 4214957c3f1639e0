// Which windows are held open over which areas, and what is to be done next so that it is so. Pure bookkeeping.
//
// Each stream names the windows to leave out of its area, and may hold back new ones until they are admitted. A window
// misses the union of the areas of all streams that leave it out. Ordinary windows are never held back: only a window
// that could be ink is worth taking away before anybody has judged it.
// Threads: one thread; nothing here knows the X server. Units and axes: areas are device pixels in root coordinates,
// those of a step in the window's own, y down.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <utility>
#include <vector>

#include "Platform/Linux/Holes/PixelSet.h"
#include "Platform/Linux/Scene/SceneModel.h"
#include "Platform/Linux/Scene/WindowFilter.h"

namespace platform::linux::holes {

class HoleBook {
 public:
  using Stream = std::uint64_t;

  // What a window is to miss from now on.
  struct Step {
    xcb_window_t window = XCB_NONE;
    PixelSet areas{};     // none: it gets back what was its own
    bool clears = false;  // what was drawn there goes, too: the window was judged to be ink
    // Only if the owner has given the window another shape meanwhile.
    bool isForReshaped = false;
    friend bool operator==(const Step&, const Step&) = default;
  };

  // `isOwn`: of this program, and never touched. `hasAlpha`: one can see through a window of this visual.
  HoleBook(std::function<bool(xcb_window_t)> isOwn, std::function<bool(xcb_visualid_t)> hasAlpha)
      : isOwn_(std::move(isOwn)), hasAlpha_(std::move(hasAlpha)) {}

  void open(Stream stream, const xcb::PixelRect& area, scene::WindowFilter filter);
  void close(Stream stream);
  void admit(Stream stream, std::span<const xcb_window_t> windows);
  [[nodiscard]] bool isOpen(Stream stream) const { return streams_.contains(stream); }
  [[nodiscard]] bool isAnyOpen() const { return !streams_.empty(); }

  // It was unmapped: what comes to the screen again is judged again.
  void unmapped(xcb_window_t window);
  // It is gone, and its hole with it.
  void destroyed(xcb_window_t window);
  // Its owner may have given it another shape.
  void reshaped(xcb_window_t window);
  // It came to the screen or has another size, so its pixels are others.
  void renewed(xcb_window_t window);

  // For the windows of the screen as they are now. Counts as done once it is asked for. A window that is held open and
  // is not among them went into another one: it gets back what was its own.
  [[nodiscard]] std::vector<Step> steps(std::span<const scene::SceneWindow> windows);

 private:
  struct Opening {
    xcb::PixelRect area;
    scene::WindowFilter filter;
  };
  struct Done {
    PixelSet areas;
    bool clears = false;
    bool isReshaped = false;
  };

  [[nodiscard]] bool leavesOut(const scene::WindowFilter& filter, const scene::SceneWindow& window) const;
  [[nodiscard]] Step wanted(const scene::SceneWindow& window) const;

  std::function<bool(xcb_window_t)> isOwn_;
  std::function<bool(xcb_visualid_t)> hasAlpha_;
  std::map<Stream, Opening> streams_;
  std::map<xcb_window_t, Done> done_;
};

}  // namespace platform::linux::holes
