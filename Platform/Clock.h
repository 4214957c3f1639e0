// The wall clock.
//
// Threads: any.
#pragma once

#include <chrono>

namespace platform {

class Clock {
 public:
  virtual ~Clock() = default;
  [[nodiscard]] virtual std::chrono::system_clock::time_point now() const = 0;
};

}  // namespace platform
