#include "Platform/Linux/Xcb/MonitorRectangles.h"

#include <xcb/randr.h>

#include "Platform/Linux/Xcb/Replies.h"

namespace platform::linux::xcb {

namespace {

bool knowsMonitors(xcb_connection_t* connection) {
  const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection, &xcb_randr_id);
  if (!extension || !extension->present) return false;
  const auto version = awaitReply(connection, xcb_randr_query_version_reply, xcb_randr_query_version(connection, 1, 5));
  return version && (version->major_version > 1 || (version->major_version == 1 && version->minor_version >= 5));
}

}  // namespace

std::optional<std::vector<PixelRect>> monitorRectangles(xcb_connection_t* connection, xcb_window_t root) {
  if (!knowsMonitors(connection)) return std::nullopt;
  const auto cookie = xcb_randr_get_monitors(connection, root, 1);
  const auto reply = awaitReply(connection, xcb_randr_get_monitors_reply, cookie);
  if (!reply) return std::nullopt;
  std::vector<PixelRect> monitors;
  for (auto each = xcb_randr_get_monitors_monitors_iterator(reply.get()); each.rem > 0;
       xcb_randr_monitor_info_next(&each))
    monitors.push_back({each.data->x, each.data->y, each.data->width, each.data->height});
  return monitors;
}

}  // namespace platform::linux::xcb
