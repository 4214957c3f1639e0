#include "Platform/Linux/Holes/Patch.h"

#include <xcb/shape.h>

namespace platform::linux::holes {

Patch::Patch(xcb::Connection& connection, xcb_window_t window, const xcb::PixelRect& size, const PixelSet& areas)
    : connection_(connection), id_(connection.newId()) {
  xcb_connection_t* c = connection_.get();
  const std::uint32_t background = 0;  // transparent
  connection_.ignoreErrors(xcb_create_window(c, XCB_COPY_FROM_PARENT, id_, window, 0, 0,
                                             static_cast<std::uint16_t>(size.width),
                                             static_cast<std::uint16_t>(size.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                                             XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL, &background));
  const auto rectangles = toRectangles(areas);
  connection_.ignoreErrors(xcb_shape_rectangles(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED,
                                                id_, 0, 0, static_cast<std::uint32_t>(rectangles.size()),
                                                rectangles.data()));
  // The pointer stays where it is.
  connection_.ignoreErrors(
      xcb_shape_rectangles(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, id_, 0, 0, 0, nullptr));
  connection_.ignoreErrors(xcb_map_window(c, id_));
}

Patch::~Patch() { connection_.ignoreErrors(xcb_destroy_window(connection_.get(), id_)); }

}  // namespace platform::linux::holes
