#include "Platform/Linux/Toolkit/ScreenGrab.h"

#include <QPainter>

namespace platform::linux::toolkit {
namespace {

constexpr std::uint32_t allPlanes = 0xFFFFFFFF;
constexpr int bytesPerPixel = 4;

xcb::PixelRect screenRect(xcb::Connection& connection) {
  xcb_connection_t* c = connection.get();
  const xcb::Reply<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(c, xcb_get_geometry(c, connection.root()), nullptr));
  return geometry ? xcb::PixelRect{0, 0, geometry->width, geometry->height} : xcb::PixelRect{};
}

}  // namespace

QImage grabScreen(xcb::Connection& connection, const xcb::PixelRect& part) {
  const xcb::PixelRect readable = intersection(part, screenRect(connection));
  if (readable.isEmpty()) return {};
  xcb_connection_t* c = connection.get();
  const xcb::Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
      c,
      xcb_get_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, connection.root(), static_cast<std::int16_t>(readable.x),
                    static_cast<std::int16_t>(readable.y), static_cast<std::uint16_t>(readable.width),
                    static_cast<std::uint16_t>(readable.height), allPlanes),
      nullptr));
  if (!reply || xcb_get_image_data_length(reply.get()) != readable.width * readable.height * bytesPerPixel) return {};
  const QImage read(xcb_get_image_data(reply.get()), readable.width, readable.height, readable.width * bytesPerPixel,
                    QImage::Format_RGB32);
  QImage picture(part.width, part.height, QImage::Format_RGB32);
  picture.fill(Qt::black);
  QPainter(&picture).drawImage(readable.x - part.x, readable.y - part.y, read);
  return picture;
}

}  // namespace platform::linux::toolkit
