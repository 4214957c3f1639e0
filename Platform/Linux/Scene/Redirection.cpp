#include "Platform/Linux/Scene/Redirection.h"

#include <xcb/composite.h>

#include <algorithm>
#include <utility>

namespace platform::linux::scene {

// Automatic redirection coexists with a compositing manager's own, whichever comes first.
constexpr std::uint8_t automatic = XCB_COMPOSITE_REDIRECT_AUTOMATIC;

void redirectSubwindows(xcb::Connection& connection) {
  if (!connection.has(xcb::Extension::composite)) return;
  xcb_composite_redirect_subwindows(connection.get(), connection.root(), automatic);
  connection.flush();
}

Redirection::Redirection(xcb::Connection& connection, std::span<const SceneWindow> windows,
                         std::vector<std::uint32_t> ownClients)
    : connection_(connection), ownClients_(std::move(ownClients)) {
  for (const SceneWindow& window : windows) redirect(window.id);
  connection_.flush();
}

void Redirection::redirect(xcb_window_t window) {
  const auto isOwn = [&] {
    return std::ranges::find(ownClients_, window & ~connection_.resourceMask()) != ownClients_.end();
  };
  if (!connection_.has(xcb::Extension::composite) || connection_.isServerOwned(window) || isOwn()) return;
  if (!redirected_.insert(window).second) return;
  connection_.ignoreErrors(xcb_composite_redirect_window(connection_.get(), window, automatic));
}

void Redirection::release(xcb_window_t window) {
  if (redirected_.erase(window) == 0) return;
  connection_.ignoreErrors(xcb_composite_unredirect_window(connection_.get(), window, automatic));
}

void Redirection::handle(const xcb_generic_event_t& event) {
  if (xcb::isSentByClient(event)) return;
  const xcb_window_t root = connection_.root();
  switch (xcb::eventType(event)) {
    case XCB_CREATE_NOTIFY: {
      const auto& created = xcb::eventAs<xcb_create_notify_event_t>(event);
      if (created.parent == root) redirect(created.window);
      break;
    }
    case XCB_DESTROY_NOTIFY: {
      const auto& destroyed = xcb::eventAs<xcb_destroy_notify_event_t>(event);
      if (destroyed.event == root) redirected_.erase(destroyed.window);
      break;
    }
    case XCB_REPARENT_NOTIFY: {
      // Inside a window manager's frame, the frame is what counts.
      const auto& reparented = xcb::eventAs<xcb_reparent_notify_event_t>(event);
      if (reparented.event != root) break;
      if (reparented.parent == root)
        redirect(reparented.window);
      else
        release(reparented.window);
      break;
    }
    default:
      break;
  }
}

}  // namespace platform::linux::scene
