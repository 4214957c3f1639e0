// When a stream may make its frames: one per interval on average, with one in reserve after a rest, and never more in a
// second than intervals fit into it.
//
// So the first change after a rest is shown at once, and so is a second one, since many things change in two steps.
// Changes nearly as frequent as frames are shown as they come. With a fixed gap between frames, many of them would come
// a moment too early and wake the stream twice.
//
// With an interval of a thirtieth of a second, no second has more than thirty frames: each frame comes at least a
// second after the thirtieth before it, so thirty-one never fit. The reserve alone would allow one more.
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
  // Not before the frame was due.
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
  // The last frames, once there are as many as a second may have; the oldest is at `oldest_`.
  std::vector<Clock::time_point> latest_;
  std::size_t oldest_ = 0;
};

}  // namespace platform::linux::stream
