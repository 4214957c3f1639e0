#include "Platform/Linux/Toolkit/WindowActivation.h"

#include <cstdint>

#include "Platform/Linux/Toolkit/QtX11.h"

namespace platform::linux::toolkit {

namespace {

constexpr std::uint32_t sourceIsPager = 2;

void requestInUsersName(xcb_connection_t* connection, xcb_window_t window) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = atomNamed(connection, "_NET_ACTIVE_WINDOW");
  message.data.data32[0] = sourceIsPager;
  xcb_send_event(connection, 0, rootWindow(connection),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(connection);
}

}  // namespace

void bringToFront(QWidget& window) {
  window.raise();
  window.activateWindow();
  if (xcb_connection_t* connection = qtConnection())
    requestInUsersName(connection, static_cast<xcb_window_t>(window.winId()));
}

}  // namespace platform::linux::toolkit
