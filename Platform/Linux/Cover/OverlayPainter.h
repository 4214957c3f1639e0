// Paints an overlay window: background, live frames, label and border.
//
// Frames are painted inside the server, and only where they changed. What lies over the picture is translucent, so it
// is blended again exactly where the picture below was just renewed, and nowhere else: alpha never adds up.
// Threads: that of the connection. Nothing here waits for the server.
// Units and axes: device pixels, origin at the window's top-left corner, y down.
// Ownership: the window belongs to the caller; window and connection must outlive the painter.
// Failure: without the extensions for blending (RENDER, XFIXES) only the background is painted.
#pragma once

#include <xcb/render.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <cstdint>
#include <optional>

#include "Platform/Linux/Cover/LabelPicture.h"
#include "Platform/Linux/Cover/OverlayAppearance.h"
#include "Platform/Linux/Holes/PixelSet.h"
#include "Platform/Linux/Stream/Frame.h"
#include "Platform/Linux/Stream/LiveTarget.h"
#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::cover {

class OverlayPainter {
 public:
  // The window must have this visual: the root window's, or one of depth 32.
  OverlayPainter(xcb::Connection& connection, xcb_window_t window, xcb_visualid_t visual, std::int32_t width,
                 std::int32_t height);
  ~OverlayPainter();
  OverlayPainter(const OverlayPainter&) = delete;
  OverlayPainter& operator=(const OverlayPainter&) = delete;

  [[nodiscard]] const OverlayAppearance& appearance() const { return appearance_; }
  // Neither of the two paints anything yet. From then on the server fills newly exposed parts of the window with the
  // background. Once a frame was painted it leaves the old content there instead, until the next frame comes.
  void setAppearance(const OverlayAppearance& appearance);
  void setSize(std::int32_t width, std::int32_t height);

  // No frame is shown any more.
  void restoreBackground();
  // Lets the desktop be seen where the picture would be. Paints nothing yet.
  void setSeenThrough(bool isSeenThrough);
  // What the window itself shows then: all but the picture, and what lies over it.
  [[nodiscard]] holes::PixelSet shownParts() const;
  // Background, label and border, without the picture.
  void paintAll() { paint({0, 0, width_, height_}); }
  void paint(const xcb::PixelRect& part);
  // Blends over what is there already: only while the window shows no label.
  void blendLabel();

  // From then on the stream itself paints changes as far as it can, until `Frame::endLive`. False when there is nowhere
  // to show the frame, when it was read before, or when it is part of a picture of another size.
  bool paintFrame(const stream::Frame& frame);

  // The label's place; empty without one.
  [[nodiscard]] xcb::PixelRect labelRect() const;

 private:
  void giveUpBackground();
  void clearPicture(const xcb::PixelRect& part);
  [[nodiscard]] std::optional<stream::LiveTarget> liveTarget() const;
  void stretch(const stream::Frame& frame, const xcb::PixelRect& target);
  // Without a region: everything.
  void setClip(xcb_xfixes_region_t region, std::int32_t x, std::int32_t y);
  void blendLabelInClip();
  void blendBorderInClip();

  xcb::Connection& connection_;
  xcb_window_t window_;
  xcb_visualid_t visual_;
  std::int32_t width_;
  std::int32_t height_;
  bool canBlend_;
  xcb_gcontext_t context_;
  xcb_render_picture_t picture_ = XCB_NONE;
  OverlayAppearance appearance_;
  bool showsPicture_ = false;
  bool isSeenThrough_ = false;
  std::optional<LabelPicture> label_;
};

}  // namespace platform::linux::cover
