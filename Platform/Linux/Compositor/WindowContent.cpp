#include "Platform/Linux/Compositor/WindowContent.h"

#include <xcb/composite.h>
#include <xcb/shape.h>
#include <xcb/xfixes.h>

#include <utility>

namespace platform::linux::compositor {

WindowContent::WindowContent(xcb::Connection& connection, const scene::SceneWindow& window)
    : connection_(connection),
      window_(window.id),
      format_(connection.formatOfVisual(window.visual)),
      damage_(connection.newId()),
      outline_(connection) {
  xcb_connection_t* c = connection_.get();
  connection_.ignoreErrors(xcb_damage_create(c, damage_, window_, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY));
  // A new damage object starts with the whole window, which its maker is about to paint anyway.
  const xcb_void_cookie_t emptied = xcb_damage_subtract(c, damage_, XCB_NONE, XCB_NONE);
  lastTaking_ = emptied.sequence;
  connection_.ignoreErrors(emptied);
}

WindowContent::~WindowContent() {
  forgetPicture();
  setEffect({});
  if (isRedirected_)
    connection_.ignoreErrors(
        xcb_composite_unredirect_window(connection_.get(), window_, XCB_COMPOSITE_REDIRECT_AUTOMATIC));
  connection_.ignoreErrors(xcb_damage_destroy(connection_.get(), damage_));
}

xcb_render_picture_t WindowContent::picture() {
  if (picture_) return *picture_;
  xcb_connection_t* c = connection_.get();
  // Whoever redirects all windows may not have reached this one yet.
  if (!std::exchange(isRedirected_, true))
    connection_.ignoreErrors(xcb_composite_redirect_window(c, window_, XCB_COMPOSITE_REDIRECT_AUTOMATIC));
  const xcb_pixmap_t pixmap = connection_.newId();
  picture_ = connection_.newId();
  connection_.ignoreErrors(xcb_composite_name_window_pixmap(c, window_, pixmap));
  connection_.ignoreErrors(xcb_render_create_picture(c, *picture_, pixmap, format_, 0, nullptr));
  // The picture keeps the pixmap alive.
  connection_.ignoreErrors(xcb_free_pixmap(c, pixmap));
  return *picture_;
}

xcb_render_picture_t WindowContent::mask() {
  if (effect_.opacity == WindowEffect::opaque) return XCB_NONE;
  if (!mask_) {
    mask_ = connection_.newId();
    // Rounds down to one of 255 levels, as compositing managers do.
    const std::uint64_t level = std::uint64_t{effect_.opacity} * 0xff / WindowEffect::opaque;
    const auto alpha = static_cast<std::uint16_t>(level * 0x101);
    xcb_render_create_solid_fill(connection_.get(), *mask_, {0, 0, 0, alpha});
  }
  return *mask_;
}

void WindowContent::setEffect(const WindowEffect& effect) {
  if (mask_) xcb_render_free_picture(connection_.get(), *mask_);
  mask_.reset();
  forgetOutline();
  effect_ = effect;
}

void WindowContent::forgetPicture() {
  if (picture_) connection_.ignoreErrors(xcb_render_free_picture(connection_.get(), *picture_));
  picture_.reset();
}

const xcb::Region& WindowContent::outline(const scene::SceneWindow& window, const xcb::PixelRect& source) {
  if (hasOutline_) return outline_;
  hasOutline_ = true;
  xcb_connection_t* c = connection_.get();
  const xcb::PixelRect outer{window.outer.x - source.x, window.outer.y - source.y, window.outer.width,
                             window.outer.height};
  xcb::PixelRect seen = outer;
  if (effect_.visiblePart) {
    const xcb::PixelRect& part = *effect_.visiblePart;
    seen = intersection(outer, {outer.x + part.x, outer.y + part.y, part.width, part.height});
  }
  outline_.set(intersection(seen, {0, 0, source.width, source.height}));
  if (!window.isShaped) return outline_;

  // The shape is read into a region of its own. If the window is gone, that region is not created, the copy fails as
  // well, and the outline is empty. A failed read into the outline itself would leave the old one in place.
  xcb::Region shape(connection_);
  const xcb_xfixes_region_t read = connection_.newId();
  connection_.ignoreErrors(xcb_xfixes_create_region_from_window(c, read, window_, XCB_SHAPE_SK_BOUNDING));
  connection_.ignoreErrors(xcb_xfixes_copy_region(c, read, shape.id()));
  connection_.ignoreErrors(xcb_xfixes_destroy_region(c, read));
  shape.translate(outer.x + window.border, outer.y + window.border);
  // A shape may reach beyond the window; the pixels do not.
  outline_.intersect(shape);
  return outline_;
}

void WindowContent::takeDamage(xcb::Region& parts) {
  const xcb_void_cookie_t taken = xcb_damage_subtract(connection_.get(), damage_, XCB_NONE, parts.id());
  lastTaking_ = taken.sequence;
  connection_.ignoreErrors(taken);
}

}  // namespace platform::linux::compositor
