// A layer that remembers the frames it was given.
//
// Threads: main thread only. Remembers whether setting its frame would have animated.
#pragma once

#include <memory>
#include <vector>

#include "Platform/Simulated/Record.h"
#include "Platform/Views.h"

namespace platform::simulated {

class SampleBufferRenderer final : public platform::SampleBufferRenderer {
 public:
  explicit SampleBufferRenderer(Record& record) : record_(record) {}

  [[nodiscard]] RendererStatus status() const override;
  void flush() override;
  void enqueue(std::shared_ptr<const SampleBuffer> sample) override;

  void setStatus(RendererStatus status) { status_ = status; }
  [[nodiscard]] const std::vector<std::shared_ptr<const SampleBuffer>>& enqueued() const { return enqueued_; }
  [[nodiscard]] int flushCount() const { return flushCount_; }

 private:
  Record& record_;
  RendererStatus status_ = RendererStatus::unknown;
  std::vector<std::shared_ptr<const SampleBuffer>> enqueued_;
  int flushCount_ = 0;
};

class DisplayLayer final : public platform::DisplayLayer {
 public:
  // Changes do not animate while `withoutAnimations` is true.
  DisplayLayer(Record& record, const bool& withoutAnimations)
      : record_(record), withoutAnimations_(withoutAnimations), renderer_(record) {}

  void setVideoGravity(VideoGravity gravity) override;
  void setFrame(const Rect& frame) override;
  [[nodiscard]] SampleBufferRenderer& sampleBufferRenderer() override;

  [[nodiscard]] VideoGravity videoGravity() const { return gravity_; }
  [[nodiscard]] const Rect& frame() const { return frame_; }
  [[nodiscard]] bool didAnimate() const { return didAnimate_; }

 private:
  Record& record_;
  const bool& withoutAnimations_;
  SampleBufferRenderer renderer_;
  VideoGravity gravity_ = VideoGravity::resizeAspect;
  Rect frame_;
  bool didAnimate_ = false;
};

}  // namespace platform::simulated
