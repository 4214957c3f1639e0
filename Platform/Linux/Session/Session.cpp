#include "Platform/Linux/Session/Session.h"

#include <xcb/randr.h>

#include <string_view>

#include "Platform/Linux/Posix/UserDirectories.h"
#include "Platform/Linux/Xcb/Replies.h"

namespace platform::linux::session {

namespace {

bool hasExtension(const xcb::Connection& connection, std::string_view name) {
  const auto cookie = xcb_query_extension(connection.get(), static_cast<std::uint16_t>(name.size()), name.data());
  const auto reply = xcb::awaitReply(connection.get(), xcb_query_extension_reply, cookie);
  return reply && reply->present != 0;
}

// Older servers of Wayland sessions have no extension of that name, but outputs.
bool hasWaylandOutput(const xcb::Connection& connection) {
  if (!connection.has(xcb::Extension::randr)) return false;
  xcb_connection_t* c = connection.get();
  const auto resources = xcb::awaitReply(c, xcb_randr_get_screen_resources_current_reply,
                                         xcb_randr_get_screen_resources_current(c, connection.root()));
  if (!resources || xcb_randr_get_screen_resources_current_outputs_length(resources.get()) == 0) return false;
  const xcb_randr_output_t first = *xcb_randr_get_screen_resources_current_outputs(resources.get());
  const auto output = xcb::awaitReply(c, xcb_randr_get_output_info_reply,
                                      xcb_randr_get_output_info(c, first, resources->config_timestamp));
  if (!output) return false;
  const std::string_view name(reinterpret_cast<const char*>(xcb_randr_get_output_info_name(output.get())),
                              static_cast<std::size_t>(xcb_randr_get_output_info_name_length(output.get())));
  return name.starts_with("XWAYLAND");
}

}  // namespace

bool isWaylandSession() {
  const auto type = posix::environmentVariable("XDG_SESSION_TYPE").value_or("");
  if (type == "wayland" || type == "x11") return type == "wayland";
  return !posix::environmentVariable("WAYLAND_DISPLAY").value_or("").empty();
}

bool isWaylandSession(const xcb::Connection& connection) {
  return isWaylandSession() || hasExtension(connection, "XWAYLAND") || hasWaylandOutput(connection);
}

std::string sessionType() {
  auto type = posix::environmentVariable("XDG_SESSION_TYPE").value_or("");
  if (!type.empty()) return type;
  return isWaylandSession() ? "wayland" : "x11";
}

}  // namespace platform::linux::session
