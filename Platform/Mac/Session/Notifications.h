// No messages are shown on macOS yet.
//
// Threads: main thread only.
#pragma once

#include "Platform/Notifications.h"

namespace platform::mac::session {

class Notifications final : public platform::Notifications {
 public:
  void showOnce(const std::string& /*name*/, const Notification& /*notification*/) override {}
};

}  // namespace platform::mac::session
