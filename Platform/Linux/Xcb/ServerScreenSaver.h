// The X server's own screen saver, including blanking, and external ones that run in its place.
//
// Threads: that of the connection. Failure: a server without the extension has no screen saver.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>

#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::xcb {

class ServerScreenSaver {
 public:
  explicit ServerScreenSaver(Connection& connection);

  [[nodiscard]] bool isActive() const { return isActive_; }
  void handle(const xcb_generic_event_t& event);

 private:
  std::optional<std::uint8_t> notification_;  // the extension's event type
  bool isActive_ = false;
};

}  // namespace platform::linux::xcb
