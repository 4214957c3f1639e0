#include "Platform/Linux/Compositor/RootBackground.h"

#include <xcb/composite.h>
#include <xcb/shape.h>

#include <array>
#include <utility>

namespace platform::linux::compositor {

namespace {

constexpr std::uint16_t side = 64;
constexpr std::int16_t beyondTheScreen = -side;

}  // namespace

RootBackground::RootBackground(xcb::Connection& connection)
    : connection_(connection), window_(connection.newId()), pixels_(connection.newId()) {
  xcb_connection_t* c = connection_.get();
  const std::array<std::uint32_t, 2> values{XCB_BACK_PIXMAP_PARENT_RELATIVE, 1};
  xcb_create_window(c, XCB_COPY_FROM_PARENT, window_, connection_.root(), beyondTheScreen, beyondTheScreen, side, side,
                    0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                    XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values.data());
  const std::uint32_t below = XCB_STACK_MODE_BELOW;
  xcb_configure_window(c, window_, XCB_CONFIG_WINDOW_STACK_MODE, &below);
  xcb_shape_rectangles(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, window_, 0, 0, 0, nullptr);
  xcb_composite_redirect_window(c, window_, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
  xcb_map_window(c, window_);
  connection_.ignoreErrors(xcb_composite_name_window_pixmap(c, window_, pixels_));
  last_ = sample();
}

RootBackground::~RootBackground() {
  connection_.ignoreErrors(xcb_free_pixmap(connection_.get(), pixels_));
  xcb_destroy_window(connection_.get(), window_);
  connection_.flush();
}

std::vector<std::uint8_t> RootBackground::sample() {
  xcb_connection_t* c = connection_.get();
  xcb_clear_area(c, 0, window_, 0, 0, 0, 0);
  const auto image = xcb::awaitReply(c, xcb_get_image_reply,
                                     xcb_get_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, pixels_, 0, 0, side, side, ~0U));
  if (!image) return {};
  const std::uint8_t* data = xcb_get_image_data(image.get());
  return {data, data + xcb_get_image_data_length(image.get())};
}

bool RootBackground::hasChanged() {
  auto before = std::exchange(last_, sample());
  return before != last_;
}

}  // namespace platform::linux::compositor
