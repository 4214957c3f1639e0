// The system's wall clock.
//
// Threads: any.
#pragma once

#include "Platform/Clock.h"

namespace platform::mac::foundation {

class Clock final : public platform::Clock {
 public:
  [[nodiscard]] std::chrono::system_clock::time_point now() const override { return std::chrono::system_clock::now(); }
};

}  // namespace platform::mac::foundation
