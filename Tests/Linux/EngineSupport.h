// What the tests of the capture engine share.
//
// Threads: that of each connection.
#pragma once

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <string>

#include "Platform/Linux/Compositor/Compositor.h"
#include "Platform/Linux/Scene/Scene.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Tests/Support/Picture.h"

namespace platform::linux {

inline void failOnError(const xcb_generic_error_t& error) {
  ADD_FAILURE() << "X error " << int{error.error_code} << " of request " << int{error.major_code} << "."
                << error.minor_code << ", resource " << error.resource_id;
}

// A connection on which every unexpected error fails the test.
inline std::unique_ptr<xcb::Connection> connectTo(const std::string& display) {
  auto connection = xcb::Connection::open(display);
  if (!connection) throw std::runtime_error(connection.error().localizedDescription);
  (*connection)->setUnexpectedErrorHandler(failOnError);
  return std::move(*connection);
}

// A part of the screen composed into a pixmap.
class Composition {
 public:
  Composition(const std::string& display, const xcb::PixelRect& source, std::vector<xcb_window_t> excluded = {},
              std::vector<std::uint32_t> ownClients = {});

  // Handles everything that other clients have synchronised with the server before; or only part of it, for the case
  // that another client is faster.
  void catchUp(int mostEvents = std::numeric_limits<int>::max());
  // Paints what has changed. False when there was nothing to paint.
  bool update(int mostEvents = std::numeric_limits<int>::max());
  // The pixmap's pixels.
  [[nodiscard]] support::Picture picture();
  // The rectangles that the last painting may have changed.
  [[nodiscard]] std::vector<xcb::PixelRect> painted();
  // From now on nobody asks what was painted.
  void needNotTell() { clear_ = {-source_.width, -source_.height, 3 * source_.width, 3 * source_.height}; }
  [[nodiscard]] compositor::Compositor& compositor() { return compositor_; }
  [[nodiscard]] xcb::Connection& connection() { return *connection_; }

 private:
  static xcb_render_picture_t makeTarget(xcb::Connection& connection, xcb_pixmap_t pixmap,
                                         const xcb::PixelRect& source);

  std::unique_ptr<xcb::Connection> connection_;
  xcb::PixelRect source_;
  xcb_pixmap_t pixmap_;
  xcb_render_picture_t target_;
  scene::Scene scene_;
  compositor::Compositor compositor_;
  xcb::Region painted_;
  xcb::PixelRect clear_;
};

}  // namespace platform::linux
