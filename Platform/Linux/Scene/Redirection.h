// Keeps the content of top-level windows off-screen, where it can be read even when they are covered.
//
// Threads: that of the connection. Ownership: keeps a reference to the connection.
// Lifetime: keep it as long as the process, because ending it loses the hidden content of clients that do not repaint.
// It ends with the connection.
// Failure: a window that is gone, or a missing Composite extension, is ignored.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <set>
#include <span>
#include <vector>

#include "Platform/Linux/Scene/SceneModel.h"
#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::scene {

// Redirects all of them, present and future, including this program's.
void redirectSubwindows(xcb::Connection& connection);

// Redirects windows one by one, all but this program's own. Those are seen as they are; off-screen they would only cost
// another copy of all that they show.
class Redirection {
 public:
  // `windows`: those that exist now. `ownClients`: the resource bases of this program's connections.
  Redirection(xcb::Connection& connection, std::span<const SceneWindow> windows, std::vector<std::uint32_t> ownClients);
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;

  // Pass it every event. The owner must have selected those of the root window's children.
  void handle(const xcb_generic_event_t& event);

 private:
  void redirect(xcb_window_t window);
  void release(xcb_window_t window);

  xcb::Connection& connection_;
  std::vector<std::uint32_t> ownClients_;
  std::set<xcb_window_t> redirected_;
};

}  // namespace platform::linux::scene
