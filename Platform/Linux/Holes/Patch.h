// A see-through window of our own inside a window of another program: where it lies, that window shows nothing, and the
// program can draw nothing.
//
// Threads: that of the connection; nothing here waits for the server.
// Units and axes: device pixels in the other window's own coordinates, y down.
// Ownership: RAII; the connection outlives it. The server ends it, too, when the connection breaks.
// Failure: nothing happens if the window is gone.
#pragma once

#include <xcb/xcb.h>

#include "Platform/Linux/Holes/PixelSet.h"
#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::holes {

class Patch {
 public:
  // `size`: of the inside of the window, which has an alpha channel.
  Patch(xcb::Connection& connection, xcb_window_t window, const xcb::PixelRect& size, const PixelSet& areas);
  ~Patch();
  Patch(const Patch&) = delete;
  Patch& operator=(const Patch&) = delete;

 private:
  xcb::Connection& connection_;
  xcb_window_t id_;
};

}  // namespace platform::linux::holes
