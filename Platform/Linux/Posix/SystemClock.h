// The system's wall clock.
#pragma once

#include "Platform/Clock.h"

namespace platform::linux::posix {

class SystemClock : public Clock {
 public:
  [[nodiscard]] std::chrono::system_clock::time_point now() const override { return std::chrono::system_clock::now(); }
};

}  // namespace platform::linux::posix
