// One copy or blend of a picture, as a request that any connection to the server can carry out: its resources live in
// the server.
//
// Units and axes: device pixels; the target's place and the clip count from the top-left corner of what is painted.
// Lifetime: that of the named resources. Failure: a picture that is gone paints nothing; whoever carries out the step
// expects that error.
#pragma once

#include <xcb/render.h>
#include <xcb/xfixes.h>

#include <cstdint>

namespace platform::linux::compositor {

struct PaintStep {
  std::uint8_t operation = XCB_RENDER_PICT_OP_SRC;
  xcb_render_picture_t source = XCB_NONE;
  xcb_render_picture_t mask = XCB_NONE;
  xcb_xfixes_region_t clip = XCB_NONE;
  std::int16_t sourceX = 0;
  std::int16_t sourceY = 0;
  std::int16_t x = 0;
  std::int16_t y = 0;
  std::uint16_t width = 0;
  std::uint16_t height = 0;
};

}  // namespace platform::linux::compositor
