// The Screen Recording permission.
//
// Threads: main thread only.
#pragma once

#include "Platform/Permission.h"

namespace platform::mac::capture {

class ScreenCaptureAccess final : public platform::ScreenCaptureAccess {
 public:
  [[nodiscard]] bool preflight() override;
  bool request() override;
};

}  // namespace platform::mac::capture
