#include "Platform/Linux/X11/Wallpaper.h"

#include <xcb/composite.h>
#include <xcb/shape.h>

#include <array>

namespace platform::x11 {

Wallpaper::Wallpaper(Connection& connection, const PixelRect& source) : connection_(connection), source_(source) {
  connection_.internAtoms({"_XROOTPMAP_ID", "_XSETROOT_ID"});
  rootPixmap_ = connection_.atom("_XROOTPMAP_ID");
  setRootPixmap_ = connection_.atom("_XSETROOT_ID");
  connection_.addRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
}

Wallpaper::~Wallpaper() {
  forget();
  connection_.removeRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
}

bool Wallpaper::isChangedBy(const xcb_generic_event_t& event) const {
  if (eventType(event) != XCB_PROPERTY_NOTIFY) return false;
  const auto& property = eventAs<xcb_property_notify_event_t>(event);
  return property.window == connection_.root() && (property.atom == rootPixmap_ || property.atom == setRootPixmap_);
}

void Wallpaper::forget() {
  if (picture_) xcb_render_free_picture(connection_.get(), *picture_);
  picture_.reset();
}

xcb_render_picture_t Wallpaper::picture(bool hasCompositingManager) {
  if (picture_) return *picture_;
  picture_ = connection_.newId();
  if (!hasCompositingManager)
    makeFromRootWindow();
  else if (!makeFromProperty(rootPixmap_) && !makeFromProperty(setRootPixmap_))
    makeGrey();
  return *picture_;
}

// The root window's background cannot be asked for. A window that inherits it can be made to hold a copy: one beneath
// all others, which nobody sees, made and destroyed in one batch.
void Wallpaper::makeFromRootWindow() {
  xcb_connection_t* c = connection_.get();
  part_ = {0, 0, source_.width, source_.height};
  const xcb_window_t probe = connection_.newId();
  const std::array<std::uint32_t, 2> values{XCB_BACK_PIXMAP_PARENT_RELATIVE, 1};
  xcb_create_window(c, XCB_COPY_FROM_PARENT, probe, connection_.root(), static_cast<std::int16_t>(source_.x),
                    static_cast<std::int16_t>(source_.y), static_cast<std::uint16_t>(source_.width),
                    static_cast<std::uint16_t>(source_.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                    XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values.data());
  const std::uint32_t below = XCB_STACK_MODE_BELOW;
  xcb_configure_window(c, probe, XCB_CONFIG_WINDOW_STACK_MODE, &below);
  xcb_shape_rectangles(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, probe, 0, 0, 0, nullptr);
  xcb_composite_redirect_window(c, probe, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
  xcb_map_window(c, probe);
  const xcb_pixmap_t pixmap = connection_.newId();
  connection_.ignoreErrors(xcb_composite_name_window_pixmap(c, probe, pixmap));
  connection_.ignoreErrors(xcb_render_create_picture(c, *picture_, pixmap,
                                                     connection_.formatOfVisual(connection_.rootVisual()), 0, nullptr));
  connection_.ignoreErrors(xcb_free_pixmap(c, pixmap));
  xcb_destroy_window(c, probe);
}

bool Wallpaper::makeFromProperty(xcb_atom_t property) {
  xcb_connection_t* c = connection_.get();
  const auto value = awaitReply(c, xcb_get_property_reply,
                                xcb_get_property(c, 0, connection_.root(), property, XCB_ATOM_PIXMAP, 0, 1));
  if (!value || value->type != XCB_ATOM_PIXMAP || value->format != 32 || value->value_len != 1) return false;
  const xcb_pixmap_t pixmap = *static_cast<const xcb_pixmap_t*>(xcb_get_property_value(value.get()));
  const auto geometry = awaitReply(c, xcb_get_geometry_reply, xcb_get_geometry(c, pixmap));
  if (!geometry || geometry->depth != connection_.rootDepth()) return false;
  part_ = source_;
  const std::uint32_t repeat = XCB_RENDER_REPEAT_NORMAL;
  // Its owner may free the pixmap at any moment, and says so by the property.
  connection_.ignoreErrors(xcb_render_create_picture(
      c, *picture_, pixmap, connection_.formatOfVisual(connection_.rootVisual()), XCB_RENDER_CP_REPEAT, &repeat));
  return true;
}

void Wallpaper::makeGrey() {
  part_ = {0, 0, source_.width, source_.height};
  xcb_render_create_solid_fill(connection_.get(), *picture_, {0x8080, 0x8080, 0x8080, 0xffff});
}

}  // namespace platform::x11
