#include "Platform/Linux/Cover/LabelPicture.h"

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <utility>

#include "Platform/Linux/Toolkit/TextAndColors.h"

namespace platform::linux::cover {

namespace {

QImage render(const LabelAppearance& appearance) {
  const QString text = QString::fromStdString(appearance.text);
  const QFont font = toolkit::toQFont(appearance.font);
  const QFontMetricsF metrics(font);
  const QSize size(static_cast<int>(std::ceil(metrics.horizontalAdvance(text))),
                   static_cast<int>(std::ceil(metrics.height())));
  if (size.isEmpty()) return {};
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setFont(font);
  painter.setPen(QColor::fromRgba(appearance.color));
  painter.drawText(QPointF(0, metrics.ascent()), text);
  return image;
}

// The server's byte order for pixels may differ from this machine's.
void matchByteOrder(QImage& image, const xcb::Connection& connection) {
  const bool serverIsLittle = xcb_get_setup(connection.get())->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
  if (serverIsLittle == (std::endian::native == std::endian::little)) return;
  image = std::move(image).rgbSwapped();
  for (int y = 0; y < image.height(); ++y) {
    auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
    // Swapping red and blue and then rotating alpha into its place reverses all four bytes.
    std::for_each(line, line + image.width(), [](QRgb& pixel) { pixel = std::rotl(pixel, 8); });
  }
}

// Takes as many requests as their maximum length demands.
void upload(xcb::Connection& connection, const QImage& image, xcb_pixmap_t pixmap, xcb_gcontext_t context) {
  constexpr std::uint32_t header = 64;
  const auto stride = static_cast<std::uint32_t>(image.bytesPerLine());
  const std::uint32_t longest = xcb_get_maximum_request_length(connection.get()) * 4 - header;
  const int rows = std::max(1, static_cast<int>(longest / stride));
  for (int y = 0; y < image.height(); y += rows) {
    const int count = std::min(rows, image.height() - y);
    xcb_put_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context,
                  static_cast<std::uint16_t>(image.width()), static_cast<std::uint16_t>(count), 0,
                  static_cast<std::int16_t>(y), 0, 32, stride * static_cast<std::uint32_t>(count),
                  image.constScanLine(y));
  }
}

}  // namespace

LabelPicture::LabelPicture(xcb::Connection& connection, const LabelAppearance& appearance) : connection_(connection) {
  QImage image = render(appearance);
  if (image.isNull()) return;
  matchByteOrder(image, connection);
  width_ = image.width();
  height_ = image.height();

  xcb_connection_t* const c = connection_.get();
  const xcb_pixmap_t pixmap = connection_.newId();
  const xcb_gcontext_t context = connection_.newId();
  picture_ = connection_.newId();
  xcb_create_pixmap(c, 32, pixmap, connection_.root(), static_cast<std::uint16_t>(width_),
                    static_cast<std::uint16_t>(height_));
  xcb_create_gc(c, context, pixmap, 0, nullptr);
  upload(connection_, image, pixmap, context);
  xcb_render_create_picture(c, picture_, pixmap, connection_.argbFormat(), 0, nullptr);
  // The picture keeps the pixmap alive.
  xcb_free_gc(c, context);
  xcb_free_pixmap(c, pixmap);
}

LabelPicture::~LabelPicture() {
  if (picture_ != XCB_NONE) xcb_render_free_picture(connection_.get(), picture_);
}

}  // namespace platform::linux::cover
