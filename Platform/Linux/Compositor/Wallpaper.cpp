#include "Platform/Linux/Compositor/Wallpaper.h"

#include <xcb/composite.h>
#include <xcb/shape.h>

#include <array>
#include <string_view>

namespace platform::linux::compositor {

namespace {

std::string_view textOf(const xcb_get_property_reply_t* reply) {
  if (reply == nullptr || reply->format != 8) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply)),
          static_cast<std::size_t>(xcb_get_property_value_length(reply))};
}

}  // namespace

Wallpaper::Wallpaper(xcb::Connection& connection, const xcb::PixelRect& source)
    : connection_(connection), source_(source) {
  connection_.internAtoms({"_XROOTPMAP_ID", "_XSETROOT_ID", "COMPTON_VERSION"});
  rootPixmap_ = connection_.atom("_XROOTPMAP_ID");
  setRootPixmap_ = connection_.atom("_XSETROOT_ID");
  comptonVersion_ = connection_.atom("COMPTON_VERSION");
  connection_.addRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
}

Wallpaper::~Wallpaper() {
  forget();
  connection_.removeRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
}

bool Wallpaper::isChangedBy(const xcb_generic_event_t& event) const {
  if (xcb::eventType(event) != XCB_PROPERTY_NOTIFY) return false;
  const auto& property = xcb::eventAs<xcb_property_notify_event_t>(event);
  return property.window == connection_.root() && (property.atom == rootPixmap_ || property.atom == setRootPixmap_);
}

void Wallpaper::forget() {
  if (picture_) xcb_render_free_picture(connection_.get(), *picture_);
  picture_.reset();
}

xcb_render_picture_t Wallpaper::picture(xcb_window_t compositingManager) {
  if (picture_) return *picture_;
  picture_ = connection_.newId();
  if (compositingManager == XCB_NONE) {
    makeFromRootWindow();
    return *picture_;
  }
  const DesktopPainting painting = paintingOf(compositingManager);
  if (!makeFromProperty(rootPixmap_, painting) && !makeFromProperty(setRootPixmap_, painting)) makePlain(painting);
  return *picture_;
}

// The root window's background cannot be queried. But a window that inherits it can be made to hold a copy: one beneath
// all others, unseen, created and destroyed in one batch.
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

DesktopPainting Wallpaper::paintingOf(xcb_window_t compositingManager) const {
  xcb_connection_t* c = connection_.get();
  constexpr std::uint32_t longest = 16;
  const auto ask = [&](xcb_atom_t property) {
    return xcb_get_property(c, 0, compositingManager, property, XCB_ATOM_STRING, 0, longest);
  };
  const auto nameCookie = ask(XCB_ATOM_WM_NAME);
  const auto versionCookie = ask(comptonVersion_);
  const auto name = xcb::awaitReply(c, xcb_get_property_reply, nameCookie);
  const auto version = xcb::awaitReply(c, xcb_get_property_reply, versionCookie);
  return desktopPainting(textOf(name.get()), textOf(version.get()));
}

bool Wallpaper::makeFromProperty(xcb_atom_t property, const DesktopPainting& painting) {
  xcb_connection_t* c = connection_.get();
  const auto value = xcb::awaitReply(c, xcb_get_property_reply,
                                     xcb_get_property(c, 0, connection_.root(), property, XCB_ATOM_PIXMAP, 0, 1));
  if (!value || value->type != XCB_ATOM_PIXMAP || value->format != 32 || value->value_len != 1) return false;
  const xcb_pixmap_t pixmap = *static_cast<const xcb_pixmap_t*>(xcb_get_property_value(value.get()));
  const auto geometry = xcb::awaitReply(c, xcb_get_geometry_reply, xcb_get_geometry(c, pixmap));
  if (!geometry || geometry->depth != connection_.rootDepth()) return false;
  part_ = source_;
  // Its owner may free the pixmap at any moment, and announces that by the property.
  connection_.ignoreErrors(xcb_render_create_picture(c, *picture_, pixmap,
                                                     connection_.formatOfVisual(connection_.rootVisual()),
                                                     XCB_RENDER_CP_REPEAT, &painting.beyondEdges));
  return true;
}

void Wallpaper::makePlain(const DesktopPainting& painting) {
  part_ = {0, 0, source_.width, source_.height};
  xcb_render_create_solid_fill(connection_.get(), *picture_, {painting.grey, painting.grey, painting.grey, 0xffff});
}

}  // namespace platform::linux::compositor
