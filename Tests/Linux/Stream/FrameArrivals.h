// Collects a stream's frames in tests, until somebody takes them.
//
// Threads: any.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <mutex>
#include <utility>

#include "Platform/Linux/Stream/Frame.h"

namespace platform::linux::stream {

class FrameArrivals final : public StreamOutput, public StreamDelegate {
 public:
  void streamDidOutput(std::shared_ptr<const SampleBuffer> sample, StreamOutputType /*type*/) override {
    const std::lock_guard lock(mutex_);
    frames_.push_back(std::dynamic_pointer_cast<const Frame>(std::move(sample)));
    ++count_;
  }
  void streamDidStop(const Error& error) override { ADD_FAILURE() << error.localizedDescription; }

  // Null when there is none.
  std::shared_ptr<const Frame> take() {
    const std::lock_guard lock(mutex_);
    if (frames_.empty()) return nullptr;
    auto frame = std::move(frames_.front());
    frames_.pop_front();
    return frame;
  }
  int count() {
    const std::lock_guard lock(mutex_);
    return count_;
  }

 private:
  std::mutex mutex_;
  std::deque<std::shared_ptr<const Frame>> frames_;
  int count_ = 0;
};

}  // namespace platform::linux::stream
