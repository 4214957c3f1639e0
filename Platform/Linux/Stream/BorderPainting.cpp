#include "Platform/Linux/Stream/BorderPainting.h"

#include <algorithm>
#include <array>

#include "Platform/Linux/Xcb/Region.h"

namespace platform::linux::stream {

namespace {

std::uint8_t channel(Argb color, unsigned shift) { return static_cast<std::uint8_t>(color >> shift); }

// Premultiplied, with 16 bits per component.
xcb_render_color_t renderColor(Argb color) {
  const std::uint32_t alpha = channel(color, 24);
  const auto scaled = [&](unsigned shift) {
    return static_cast<std::uint16_t>((channel(color, shift) * alpha * 257 + 127) / 255);
  };
  return {scaled(16), scaled(8), scaled(0), static_cast<std::uint16_t>(alpha * 257)};
}

}  // namespace

void blendBorder(xcb::Connection& connection, xcb_render_picture_t target, std::int32_t width, std::int32_t height,
                 const BorderAppearance& border) {
  const std::int32_t line = std::min(border.width, (std::min(width, height) + 1) / 2);
  const std::int32_t inner = height - 2 * line;
  // Four sides that do not overlap at the corners.
  std::array<xcb_rectangle_t, 4> sides{xcb::toRectangle({0, 0, width, line}),
                                       xcb::toRectangle({0, height - line, width, line}),
                                       xcb::toRectangle({0, line, line, std::max(0, inner)}),
                                       xcb::toRectangle({width - line, line, line, std::max(0, inner)})};
  const bool meetInTheMiddle = inner < 0 || width < 2 * line;
  if (meetInTheMiddle) sides = {xcb::toRectangle({0, 0, width, height}), {}, {}, {}};
  connection.ignoreErrors(xcb_render_fill_rectangles(connection.get(), XCB_RENDER_PICT_OP_OVER, target,
                                                     renderColor(border.color),
                                                     static_cast<std::uint32_t>(sides.size()), sides.data()));
}

}  // namespace platform::linux::stream
