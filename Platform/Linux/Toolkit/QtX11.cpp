#include "Platform/Linux/Toolkit/QtX11.h"

#include <QGuiApplication>
#include <cstdint>
#include <cstring>

#include "Platform/Linux/Xcb/Replies.h"

namespace platform::linux::toolkit {

xcb_connection_t* qtConnection() {
  const auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
  const auto* native = application ? application->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
  return native ? native->connection() : nullptr;
}

xcb_window_t rootWindow(xcb_connection_t* connection) {
  return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

xcb_atom_t atomNamed(xcb_connection_t* connection, const char* name) {
  const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
  const auto reply = xcb::awaitReply(connection, xcb_intern_atom_reply, cookie);
  return reply ? reply->atom : xcb_atom_t{XCB_NONE};
}

xcb_window_t selectionOwner(xcb_connection_t* connection, const char* selection) {
  const auto cookie = xcb_get_selection_owner(connection, atomNamed(connection, selection));
  const auto reply = xcb::awaitReply(connection, xcb_get_selection_owner_reply, cookie);
  return reply ? reply->owner : xcb_window_t{XCB_NONE};
}

}  // namespace platform::linux::toolkit
