// The layer that shows captured frames.
//
// Threads: main thread only.
#pragma once

#import <AVFoundation/AVFoundation.h>

#include "Platform/Views.h"

namespace platform::mac::views {

class Renderer final : public SampleBufferRenderer {
 public:
  explicit Renderer(AVSampleBufferDisplayLayer* layer) : layer_(layer) {}
  [[nodiscard]] RendererStatus status() const override;
  void flush() override;
  void enqueue(std::shared_ptr<const platform::SampleBuffer> sample) override;

 private:
  AVSampleBufferDisplayLayer* layer_;
};

class DisplayLayer final : public platform::DisplayLayer {
 public:
  void setVideoGravity(VideoGravity gravity) override;
  void setFrame(const Rect& frame) override;
  [[nodiscard]] SampleBufferRenderer& sampleBufferRenderer() override { return renderer_; }
  [[nodiscard]] CALayer* layer() const { return layer_; }

 private:
  AVSampleBufferDisplayLayer* layer_ = [[AVSampleBufferDisplayLayer alloc] init];
  Renderer renderer_{layer_};
};

}  // namespace platform::mac::views
