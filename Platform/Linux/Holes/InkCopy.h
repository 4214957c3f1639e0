// What a window showed before its ink was taken away, for a program that does not draw it again by itself.
//
// Threads: that of the connection; nothing here waits for the server but `isDrawnAnew`.
// Units and axes: device pixels in the window's own coordinates, y down.
// Ownership: RAII; the connection outlives it.
// Failure: a window that is gone, or has another size by then, gets nothing back.
#pragma once

#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <optional>

#include "Platform/Linux/Holes/PixelSet.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Linux/Xcb/Region.h"

namespace platform::linux::holes {

class InkCopy {
 public:
  // Of the window as it is now, without its border.
  InkCopy(xcb::Connection& connection, xcb_window_t window, std::uint8_t depth, const xcb::PixelRect& size);
  ~InkCopy();
  InkCopy(const InkCopy&) = delete;
  InkCopy& operator=(const InkCopy&) = delete;

  [[nodiscard]] bool fits(const xcb::PixelRect& size) const { return size == size_; }
  // From now on it is watched whether the window's program draws in these areas.
  void watch(const PixelSet& areas);
  void unwatch();
  // Where it did not, what was there before is painted back.
  void bringBack();

 private:
  [[nodiscard]] bool isDrawnAnew();

  xcb::Connection& connection_;
  xcb_window_t window_;
  xcb::PixelRect size_;
  xcb_pixmap_t pixels_;
  std::optional<xcb_damage_damage_t> damage_;
  PixelSet areas_;
};

}  // namespace platform::linux::holes
