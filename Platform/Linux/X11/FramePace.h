// When a stream may make its frames: one in an interval, counted over time, with one in reserve after a rest.
//
// So the first change after a rest is shown at once, and so is a second one, for many things change in two steps. And
// what changes just as often as frames may be made is shown as it comes. Were each frame kept at its distance from the
// last one, every other of those changes would come a moment too early, and wake the stream twice.
//
// Threads: any one.
#pragma once

#include <algorithm>
#include <chrono>

namespace platform::x11 {

class FramePace {
 public:
  using Clock = std::chrono::steady_clock;

  explicit FramePace(Clock::duration interval) : interval_(interval) {}

  // When the next frame may be made.
  [[nodiscard]] Clock::time_point due() const { return due_; }
  // Also for one that was made before its time: nobody waits longer than an interval for that.
  void madeFrame(Clock::time_point now) { due_ = std::clamp(due_ + interval_, now, now + interval_); }

 private:
  Clock::duration interval_;
  Clock::time_point due_;
};

}  // namespace platform::x11
