#include "Platform/Linux/Toolkit/ShallowScreen.h"

#include <QApplication>
#include <QEvent>
#include <QImage>
#include <QTimer>
#include <QWindow>
#include <array>
#include <cstdint>

#include "Platform/Linux/Toolkit/QtX11.h"
#include "Platform/Linux/Xcb/Replies.h"

namespace platform::linux::toolkit {
namespace {

// The only such depth that servers still offer; a pixel takes one byte.
constexpr int shallowDepth = 8;
constexpr int shades = 16;

const xcb_screen_t* screenOf(xcb_connection_t* connection) {
  return xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
}

// Paints the window whenever Qt would, and whenever something happened that may have changed its look.
class ShallowPainter : public QObject {
 public:
  ShallowPainter(QWidget& window, xcb_connection_t* connection) : QObject(&window), window_(window), c_(connection) {
    allocateShades();
    soon_.setSingleShot(true);
    soon_.setInterval(0);
    connect(&soon_, &QTimer::timeout, this, [this] { paint(); });
    qApp->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (isPainting_) return false;
    const bool isOurs = watched == &window_ || watched == window_.windowHandle();
    if (isOurs && (event->type() == QEvent::Expose || event->type() == QEvent::UpdateRequest)) {
      window_.setAttribute(Qt::WA_Mapped);
      soon_.start();
      return true;
    }
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (widget != nullptr && widget->window() == &window_ && event->type() != QEvent::Timer) soon_.start();
    return false;
  }

 private:
  // A shade that the colour map has no room for becomes black or white.
  void allocateShades() {
    const xcb_screen_t* screen = screenOf(c_);
    for (int shade = 0; shade < shades; ++shade) {
      const auto light = static_cast<std::uint16_t>(0xFFFF * shade / (shades - 1));
      const auto cookie = xcb_alloc_color(c_, screen->default_colormap, light, light, light);
      const auto reply = xcb::awaitReply(c_, xcb_alloc_color_reply, cookie);
      const std::uint32_t substitute = 2 * shade < shades ? screen->black_pixel : screen->white_pixel;
      pixels_[static_cast<std::size_t>(shade)] = static_cast<char>(reply ? reply->pixel : substitute);
    }
  }

  void paint() {
    if (!window_.isVisible()) return;
    QImage picture(window_.size(), QImage::Format_RGB32);
    isPainting_ = true;
    window_.render(&picture);
    isPainting_ = false;
    const QImage grey = picture.convertToFormat(QImage::Format_Grayscale8);
    // The server wants rows of whole words, which is how an image keeps them.
    QByteArray pixels(reinterpret_cast<const char*>(grey.constBits()), grey.sizeInBytes());
    for (char& pixel : pixels) pixel = pixels_[static_cast<std::uint8_t>(pixel) * std::size_t{shades} / 256];
    const auto id = static_cast<xcb_window_t>(window_.winId());
    // Qt gives its windows a colour map of their own, without colours.
    xcb_change_window_attributes(c_, id, XCB_CW_COLORMAP, &screenOf(c_)->default_colormap);
    const xcb_gcontext_t gc = xcb_generate_id(c_);
    xcb_create_gc(c_, gc, id, 0, nullptr);
    xcb_put_image(c_, XCB_IMAGE_FORMAT_Z_PIXMAP, id, gc, static_cast<std::uint16_t>(grey.width()),
                  static_cast<std::uint16_t>(grey.height()), 0, 0, 0, shallowDepth,
                  static_cast<std::uint32_t>(pixels.size()), reinterpret_cast<const std::uint8_t*>(pixels.constData()));
    xcb_free_gc(c_, gc);
    xcb_flush(c_);
  }

  QWidget& window_;
  xcb_connection_t* c_;
  std::array<char, shades> pixels_{};
  QTimer soon_;
  bool isPainting_ = false;
};

}  // namespace

void paintOnShallowScreen(QWidget& window) {
  xcb_connection_t* connection = qtConnection();
  if (connection != nullptr && screenOf(connection)->root_depth == shallowDepth) new ShallowPainter(window, connection);
}

}  // namespace platform::linux::toolkit
