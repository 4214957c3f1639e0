// A line of text as a picture with alpha in the X server: rendered here once, blended there as often as needed.
//
// Threads: main thread (it uses the toolkit's fonts, so the toolkit's application object must exist). Units: device
// pixels. Ownership: owns the picture; the connection must outlive it. Failure: a text that takes no room has size 0
// and must not be blended.
#pragma once

#include <xcb/render.h>

#include <cstdint>

#include "Platform/Linux/Cover/OverlayAppearance.h"
#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::cover {

class LabelPicture {
 public:
  LabelPicture(xcb::Connection& connection, const LabelAppearance& appearance);
  ~LabelPicture();
  LabelPicture(const LabelPicture&) = delete;
  LabelPicture& operator=(const LabelPicture&) = delete;

  [[nodiscard]] xcb_render_picture_t id() const { return picture_; }
  [[nodiscard]] std::int32_t width() const { return width_; }
  [[nodiscard]] std::int32_t height() const { return height_; }

 private:
  xcb::Connection& connection_;
  xcb_render_picture_t picture_ = XCB_NONE;
  std::int32_t width_ = 0;
  std::int32_t height_ = 0;
};

}  // namespace platform::linux::cover
