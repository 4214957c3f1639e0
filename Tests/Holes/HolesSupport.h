// What the tests of holes share.
#pragma once

#include <gtest/gtest.h>
#include <xcb/shape.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Linux/Xcb/Replies.h"
#include "Tests/Support/Picture.h"

namespace platform::linux::holes {

// A connection on which every error that nobody expected fails the test.
inline std::unique_ptr<xcb::Connection> connectTo(const std::string& display) {
  auto connection = xcb::Connection::open(display);
  if (!connection) throw std::runtime_error(connection.error().localizedDescription);
  (*connection)->setUnexpectedErrorHandler([](const xcb_generic_error_t& error) {
    ADD_FAILURE() << "X error " << int{error.error_code} << " of request " << int{error.major_code} << "."
                  << error.minor_code << ", resource " << error.resource_id;
  });
  return std::move(*connection);
}

// A window's bounding shape as the server tells it; absent when it has none.
inline std::optional<std::vector<support::PixelRect>> shapeOf(xcb_connection_t* connection, xcb_window_t window) {
  const auto extents =
      xcb::awaitReply(connection, xcb_shape_query_extents_reply, xcb_shape_query_extents(connection, window));
  if (!extents || extents->bounding_shaped == 0) return std::nullopt;
  const auto reply = xcb::awaitReply(connection, xcb_shape_get_rectangles_reply,
                                     xcb_shape_get_rectangles(connection, window, XCB_SHAPE_SK_BOUNDING));
  std::vector<support::PixelRect> rectangles;
  for (int i = 0; i < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++i) {
    const xcb_rectangle_t& rect = xcb_shape_get_rectangles_rectangles(reply.get())[i];
    rectangles.push_back({rect.x, rect.y, rect.width, rect.height});
  }
  return rectangles;
}

inline std::size_t sizeOf(const support::PixelRect& rect) {
  return std::size_t{static_cast<unsigned>(rect.width)} * static_cast<unsigned>(rect.height);
}

}  // namespace platform::linux::holes
