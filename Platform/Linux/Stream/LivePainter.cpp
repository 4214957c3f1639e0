#include "Platform/Linux/Stream/LivePainter.h"

#include "Platform/Linux/Stream/BorderPainting.h"

namespace platform::linux::stream {

namespace {

// The part of the picture that the border leaves free.
xcb::PixelRect withoutBorder(const LiveTarget& target) {
  const std::int32_t line = target.border ? target.border->width : 0;
  return {line - target.x, line - target.y, target.windowWidth - 2 * line, target.windowHeight - 2 * line};
}

}  // namespace

void LivePainter::paint(compositor::Compositor& compositor, const LiveTarget& target, xcb::Region& changed) {
  xcb_connection_t* const c = connection_.get();
  if (target.window != window_) {
    forgetWindow();
    window_ = target.window;
    picture_ = connection_.newId();
    connection_.ignoreErrors(xcb_render_create_picture(
        c, picture_, window_, connection_.formatOfVisual(connection_.rootVisual()), 0, nullptr));
  }
  const xcb::PixelRect clear = withoutBorder(target);
  const xcb::PixelRect painted = compositor.paintTo({picture_, target.x, target.y, clear}, changed);
  if (!target.border || intersection(painted, clear) == painted) return;
  // The border is translucent, so it is blended again exactly where the picture below it was renewed.
  connection_.ignoreErrors(xcb_xfixes_set_picture_clip_region(
      c, picture_, changed.id(), static_cast<std::int16_t>(target.x), static_cast<std::int16_t>(target.y)));
  blendBorder(connection_, picture_, target.windowWidth, target.windowHeight, *target.border);
}

void LivePainter::forgetWindow() {
  if (picture_ != XCB_NONE) connection_.ignoreErrors(xcb_render_free_picture(connection_.get(), picture_));
  picture_ = XCB_NONE;
}

}  // namespace platform::linux::stream
