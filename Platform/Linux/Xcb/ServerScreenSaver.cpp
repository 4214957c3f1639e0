#include "Platform/Linux/Xcb/ServerScreenSaver.h"

#include <xcb/screensaver.h>

#include "Platform/Linux/Xcb/Replies.h"

namespace platform::linux::xcb {
namespace {

bool meansActive(std::uint8_t state) {
  return state == XCB_SCREENSAVER_STATE_ON || state == XCB_SCREENSAVER_STATE_CYCLE;
}

}  // namespace

ServerScreenSaver::ServerScreenSaver(Connection& connection) {
  const auto* extension = xcb_get_extension_data(connection.get(), &xcb_screensaver_id);
  if (extension == nullptr || extension->present == 0) return;
  notification_ = static_cast<std::uint8_t>(extension->first_event + XCB_SCREENSAVER_NOTIFY);
  // Select events before reading the state, so that no change is missed in between.
  xcb_screensaver_select_input(connection.get(), connection.root(), XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
  const auto info = awaitReply(connection.get(), xcb_screensaver_query_info_reply,
                               xcb_screensaver_query_info(connection.get(), connection.root()));
  isActive_ = info && meansActive(info->state);
}

void ServerScreenSaver::handle(const xcb_generic_event_t& event) {
  if (eventType(event) == notification_) isActive_ = meansActive(eventAs<xcb_screensaver_notify_event_t>(event).state);
}

}  // namespace platform::linux::xcb
