#include "Platform/Linux/Views/DisplayLayerNode.h"

#include <utility>

#include "Platform/Linux/Views/ViewNode.h"

namespace platform::linux::views {

void DisplayLayerNode::setVideoGravity(VideoGravity gravity) {
  gravity_ = gravity;
  if (owner_) owner_->setNeedsDisplay();
}

void DisplayLayerNode::setFrame(const Rect& frame) {
  if (std::exchange(frame_, frame) != frame && owner_) owner_->setNeedsDisplay();
}

void DisplayLayerNode::flush() {
  status_ = RendererStatus::unknown;
  ViewHost* host = owner_ ? owner_->host() : nullptr;
  if (host) host->forgetSamples();
}

void DisplayLayerNode::enqueue(std::shared_ptr<const SampleBuffer> sample) {
  ViewHost* host = owner_ ? owner_->host() : nullptr;
  if (!host || status_ == RendererStatus::failed) return;
  status_ = host->presentSample(std::move(sample)) ? RendererStatus::rendering : RendererStatus::failed;
}

}  // namespace platform::linux::views
