#include "Platform/Linux/Session/Session.h"

#include <string_view>

#include "Platform/Linux/Posix/UserDirectories.h"
#include "Platform/Linux/Xcb/Replies.h"

namespace platform::linux::session {

bool isWaylandSession() {
  const auto type = posix::environmentVariable("XDG_SESSION_TYPE").value_or("");
  if (type == "wayland" || type == "x11") return type == "wayland";
  return !posix::environmentVariable("WAYLAND_DISPLAY").value_or("").empty();
}

bool isWaylandSession(const xcb::Connection& connection) {
  if (isWaylandSession()) return true;
  constexpr std::string_view name = "XWAYLAND";
  const auto cookie = xcb_query_extension(connection.get(), name.size(), name.data());
  const auto reply = xcb::awaitReply(connection.get(), xcb_query_extension_reply, cookie);
  return reply && reply->present != 0;
}

std::string sessionType() {
  auto type = posix::environmentVariable("XDG_SESSION_TYPE").value_or("");
  if (!type.empty()) return type;
  return isWaylandSession() ? "wayland" : "x11";
}

}  // namespace platform::linux::session
