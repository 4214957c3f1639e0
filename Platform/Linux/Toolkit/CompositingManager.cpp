#include "Platform/Linux/Toolkit/CompositingManager.h"

#include "Platform/Linux/Toolkit/QtX11.h"
#include "Platform/Linux/Xcb/Replies.h"

namespace platform::linux::toolkit {

namespace {

std::string textProperty(xcb::Connection& connection, xcb_window_t window, const char* name) {
  constexpr std::uint32_t longest = 64;  // of four bytes each
  const auto cookie =
      xcb_get_property(connection.get(), 0, window, connection.atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, longest);
  const auto reply = xcb::awaitReply(connection.get(), xcb_get_property_reply, cookie);
  if (!reply || reply->format != 8) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::string windowName(xcb::Connection& connection, xcb_window_t window) {
  const std::string name = textProperty(connection, window, "_NET_WM_NAME");
  return name.empty() ? textProperty(connection, window, "WM_NAME") : name;
}

}  // namespace

std::optional<std::string> compositingManager(xcb::Connection& connection) {
  const std::string selection = "_NET_WM_CM_S" + std::to_string(connection.screenNumber());
  const xcb_window_t owner = selectionOwner(connection.get(), selection.c_str());
  if (owner == XCB_NONE) return std::nullopt;
  return windowName(connection, owner);
}

}  // namespace platform::linux::toolkit
