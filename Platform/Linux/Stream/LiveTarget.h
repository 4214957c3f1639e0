// Where a stream's picture is shown, so that the stream can keep it up to date there by itself.
//
// Units and axes: device pixels of the window; (x, y) is the picture's top-left corner.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>

#include "Platform/Linux/Stream/BorderAppearance.h"

namespace platform::linux::stream {

struct LiveTarget {
  xcb_window_t window = XCB_NONE;
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t windowWidth = 0;
  std::int32_t windowHeight = 0;
  std::optional<BorderAppearance> border;  // over the picture
};

}  // namespace platform::linux::stream
