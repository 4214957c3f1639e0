// The screen savers and lock screens of the session bus: the common interface and those of individual desktops.
//
// Threads: main thread only; the callback comes from the event loop. Failure: one that does not exist, or does not
// answer, is not active.
#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "Platform/Linux/Session/BusFlag.h"
#include "Platform/Linux/Session/SessionBusReturn.h"

namespace platform::linux::session {

class ScreenSavers {
 public:
  // `changed`: the service's bus name, and whether it hides the screen now.
  explicit ScreenSavers(std::function<void(std::string_view service, bool isActive)> changed);

 private:
  void follow(const QDBusConnection& bus);

  std::function<void(std::string_view, bool)> changed_;
  std::vector<std::unique_ptr<BusFlag>> flags_;
  SessionBusReturn busReturn_;
};

}  // namespace platform::linux::session
