// When a stream may make its frames: one in an interval, counted over time, with one in reserve after a rest, and never
// more in a second than intervals fit into it.
//
// So the first change after a rest is shown at once, and so is a second one, for many things change in two steps. And
// what changes nearly as often as frames may be made is shown as it comes. Were each frame kept at its distance from
// the last one, many of those changes would come a moment too early, and wake the stream twice.
//
// No second has more than thirty frames where the interval is a thirtieth of one: each frame comes a second or more
// after the thirtieth before it, so thirty-one never fit into less. The reserve alone would allow one more.
//
// Threads: any one.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace platform::linux::stream {

class FramePace {
 public:
  using Clock = std::chrono::steady_clock;

  // Without an interval there is no limit.
  explicit FramePace(Clock::duration interval) : interval_(interval), latest_(mostInASecond(interval)) {}

  // When the next frame may be made.
  [[nodiscard]] Clock::time_point due() const {
    return latest_.empty() ? due_ : std::max(due_, latest_[oldest_] + std::chrono::seconds(1));
  }
  // Not before it was due.
  void madeFrame(Clock::time_point now) {
    due_ = std::clamp(due() + interval_, now, now + interval_);
    if (latest_.empty()) return;
    latest_[oldest_] = now;
    oldest_ = (oldest_ + 1) % latest_.size();
  }

 private:
  static std::size_t mostInASecond(Clock::duration interval) {
    if (interval <= Clock::duration::zero()) return 0;
    return std::max<std::size_t>(1, static_cast<std::size_t>(std::chrono::seconds(1) / interval));
  }

  Clock::duration interval_;
  Clock::time_point due_;
  // When as many frames were made as a second may have, the oldest of them at `oldest_`.
  std::vector<Clock::time_point> latest_;
  std::size_t oldest_ = 0;
};

}  // namespace platform::linux::stream
