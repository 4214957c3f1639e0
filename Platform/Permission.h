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
  // Asks for permission, in whatever way the desktop offers; true when capturing is now allowed.
  virtual bool request() = 0;
};

}  // namespace platform
