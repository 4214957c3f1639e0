#include "Platform/Linux/Holes/SeeThroughVisual.h"

namespace platform::linux::holes {

std::optional<xcb_visualid_t> seeThroughVisual(const xcb::Connection& connection) {
  auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
  while (screen.rem > 1 && screen.data->root != connection.root()) xcb_screen_next(&screen);
  for (auto depth = xcb_screen_allowed_depths_iterator(screen.data); depth.rem > 0; xcb_depth_next(&depth)) {
    if (depth.data->depth != 32) continue;
    for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0; xcb_visualtype_next(&visual)) {
      const auto format = connection.formatOfVisual(visual.data->visual_id);
      if (format != 0 && format == connection.argbFormat()) return visual.data->visual_id;
    }
  }
  return std::nullopt;
}

}  // namespace platform::linux::holes
