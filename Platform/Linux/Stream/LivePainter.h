// Keeps a stream's picture up to date in the window that shows it, on the stream's own thread and connection, so that a
// change wakes nobody else.
//
// Threads: that of the connection. Ownership: the connection must outlive it; the window is somebody else's. Failure:
// nothing is shown in a window that is gone.
#pragma once

#include <xcb/render.h>

#include "Platform/Linux/Compositor/Compositor.h"
#include "Platform/Linux/Stream/LiveTarget.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Linux/Xcb/Region.h"

namespace platform::linux::stream {

class LivePainter {
 public:
  explicit LivePainter(xcb::Connection& connection) : connection_(connection) {}
  ~LivePainter() { forgetWindow(); }
  LivePainter(const LivePainter&) = delete;
  LivePainter& operator=(const LivePainter&) = delete;

  // Paints what has changed. Leaves `changed` with arbitrary content.
  void paint(compositor::Compositor& compositor, const LiveTarget& target, xcb::Region& changed);

 private:
  void forgetWindow();

  xcb::Connection& connection_;
  xcb_window_t window_ = XCB_NONE;
  xcb_render_picture_t picture_ = XCB_NONE;
};

}  // namespace platform::linux::stream
