// The permission to capture the screen.
//
// Threads: main thread only. Neither call blocks on the user.
#pragma once

namespace platform {

class ScreenCaptureAccess {
 public:
  virtual ~ScreenCaptureAccess() = default;
  // Whether capturing is allowed now. Never asks.
  [[nodiscard]] virtual bool preflight() = 0;
  // Asks for it, in whatever way the desktop has; true when it is allowed now.
  virtual bool request() = 0;
};

}  // namespace platform
