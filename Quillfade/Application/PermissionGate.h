// The gate in front of every command that can show the live cover. It asks the desktop for permission to capture the
// screen, and then the user what to do without it.
//
// Threads: main thread only. Lifetime: what it is given outlives it. Failure: a sentence for the user; the command is
// abandoned.
#pragma once

#include <expected>
#include <string>

#include "Platform/Platform.h"
#include "Quillfade/Application/Alerts.h"
#include "Quillfade/Basics/Outcome.h"
#include "Quillfade/Cover/OverlayController.h"

namespace quillfade {

class PermissionGate {
 public:
  enum class Permission { granted, solidPreferred };

  PermissionGate(platform::Platform& platform, OverlayController& overlay, Alerts& alerts)
      : platform_(platform), overlay_(overlay), alerts_(alerts) {}

  // Asks if the style in force is the live one. A user who prefers the solid cover gets it.
  [[nodiscard]] Outcome ensureLivePermission();
  // Asks whatever the style is, and changes nothing.
  [[nodiscard]] std::expected<Permission, std::string> ask();

 private:
  platform::Platform& platform_;
  OverlayController& overlay_;
  Alerts& alerts_;
};

}  // namespace quillfade
