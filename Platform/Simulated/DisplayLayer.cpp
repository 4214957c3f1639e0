#include "Platform/Simulated/DisplayLayer.h"

#include <utility>

namespace platform::simulated {

RendererStatus SampleBufferRenderer::status() const {
  record_.expectMainThread("SampleBufferRenderer::status");
  return status_;
}

void SampleBufferRenderer::flush() {
  record_.call("renderer: flush");
  ++flushCount_;
  status_ = RendererStatus::unknown;
}

void SampleBufferRenderer::enqueue(std::shared_ptr<const SampleBuffer> sample) {
  record_.call("renderer: enqueue");
  if (!sample) misuse("SampleBufferRenderer::enqueue was given no frame");
  enqueued_.push_back(std::move(sample));
}

void DisplayLayer::setVideoGravity(VideoGravity gravity) {
  record_.expectMainThread("DisplayLayer::setVideoGravity");
  gravity_ = gravity;
}

void DisplayLayer::setFrame(const Rect& frame) {
  record_.expectMainThread("DisplayLayer::setFrame");
  expectFinite(frame, "DisplayLayer::setFrame");
  frame_ = frame;
  didAnimate_ = didAnimate_ || !withoutAnimations_;
}

SampleBufferRenderer& DisplayLayer::sampleBufferRenderer() {
  record_.expectMainThread("DisplayLayer::sampleBufferRenderer");
  return renderer_;
}

}  // namespace platform::simulated
