// A wall clock that moves with the run loop's time.
//
// Threads: `now` on any thread; set the start before other threads ask.
#pragma once

#include <chrono>

#include "Platform/Clock.h"
#include "Platform/Simulated/RunLoop.h"

namespace platform::simulated {

class Clock final : public platform::Clock {
 public:
  explicit Clock(const RunLoop& runLoop) : runLoop_(runLoop) {}

  [[nodiscard]] std::chrono::system_clock::time_point now() const override {
    return start_ + std::chrono::duration_cast<std::chrono::system_clock::duration>(runLoop_.elapsed());
  }

  // What the clock said when the run loop's time began.
  void setStart(std::chrono::system_clock::time_point start) { start_ = start; }

 private:
  const RunLoop& runLoop_;
  std::chrono::system_clock::time_point start_ =
      std::chrono::sys_days{std::chrono::year{2026} / 11 / 15} + std::chrono::hours{23};
};

}  // namespace platform::simulated
