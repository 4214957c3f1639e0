// A window over everything else that shows a live picture or a plain cover and lets every click through.
//
// No window manager places it, it never gets the focus, and no compositing manager gives it a shadow or steps aside for
// it.
// Threads: main thread, on the main connection; its events come through `handle`. Requests are buffered: whoever runs
// the event loop flushes before it waits.
// Units and axes: device pixels; `setFrame` in root coordinates.
// Ownership: owns the X window; the connection must outlive it.
// Failure: none that the caller could act on. Frames that cannot be shown are dropped.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "Platform/Linux/Cover/OverlayAppearance.h"
#include "Platform/Linux/Cover/OverlayPainter.h"
#include "Platform/Linux/Stream/Frame.h"
#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::cover {

class OverlayWindow {
 public:
  // Not on the screen yet. An empty width or height counts as one pixel.
  // `seeThrough`: the visual of a window that shows the desktop beneath, best of depth 32; otherwise the root window's.
  OverlayWindow(xcb::Connection& connection, const xcb::PixelRect& frame, const OverlayAppearance& appearance,
                std::optional<xcb_visualid_t> seeThrough = std::nullopt);
  ~OverlayWindow();
  OverlayWindow(const OverlayWindow&) = delete;
  OverlayWindow& operator=(const OverlayWindow&) = delete;

  [[nodiscard]] xcb_window_t id() const { return window_; }
  [[nodiscard]] const xcb::PixelRect& frame() const { return frame_; }
  [[nodiscard]] bool isShown() const { return isShown_; }
  // In a Wayland session.
  [[nodiscard]] bool canBeSeenThrough() const { return canBeSeenThrough_; }

  void setFrame(const xcb::PixelRect& frame);
  void setAppearance(const OverlayAppearance& appearance);

  // On top of everything, or directly below the given window (a screen locker) if it still exists.
  void orderFront(std::optional<xcb_window_t> below);
  void orderOut();

  // Until `release`, nothing of the window is painted or seen, even when it is ordered to the front.
  void holdBack();
  void release();

  // Shows what the frame changes. The newest stream that still runs has the window: a frame of an older one is dropped,
  // and so is a partial frame of a stream other than the one shown. False when dropped.
  bool presentFrame(std::shared_ptr<const stream::Frame> frame);
  // Shows the desktop beneath where the picture would be, until `forgetFrames`. False when it cannot.
  bool showThrough();
  // Takes the picture away.
  void forgetFrames();

  void handle(const xcb_generic_event_t& event);

 private:
  void create(xcb_visualid_t visual);
  void setProperties();
  void setText(const char* property, const char* type, std::string_view text);
  void setNumbers(const char* property, xcb_atom_t type, const std::vector<std::uint32_t>& values);
  void endLive();
  void restore();
  void exposed(const xcb::PixelRect& part);
  void paintSeenThrough();
  void shape(const std::vector<xcb_rectangle_t>& parts);
  void unshape();
  [[nodiscard]] bool mayShow(const stream::Frame& frame) const;
  void remember(const std::shared_ptr<const stream::Frame>& frame);

  xcb::Connection& connection_;
  xcb_window_t window_;
  xcb_colormap_t colors_ = XCB_NONE;  // for a visual other than the root window's
  xcb::PixelRect frame_;
  bool isShown_ = false;
  bool isHeldBack_ = false;
  bool canBeSeenThrough_;
  bool isSeenThrough_ = false;
  std::optional<OverlayPainter> painter_;
  // The last one shown. It keeps the way to its stream.
  std::shared_ptr<const stream::Frame> lastFrame_;
  // One of each stream that was shown and may still run, oldest first.
  std::vector<std::shared_ptr<const stream::Frame>> streams_;
};

}  // namespace platform::linux::cover
