#include "Platform/Mac/Views/DisplayLayer.h"

#include "Platform/Mac/Capture/SampleBuffer.h"
#include "Platform/Mac/Foundation/Bridge.h"

namespace platform::mac::views {
namespace {

static_assert(static_cast<NSInteger>(RendererStatus::unknown) == AVQueuedSampleBufferRenderingStatusUnknown);
static_assert(static_cast<NSInteger>(RendererStatus::rendering) == AVQueuedSampleBufferRenderingStatusRendering);
static_assert(static_cast<NSInteger>(RendererStatus::failed) == AVQueuedSampleBufferRenderingStatusFailed);

}  // namespace

RendererStatus Renderer::status() const { return static_cast<RendererStatus>(layer_.sampleBufferRenderer.status); }

void Renderer::flush() { [layer_.sampleBufferRenderer flush]; }

void Renderer::enqueue(std::shared_ptr<const platform::SampleBuffer> sample) {
  // Every sample buffer of this desktop comes from its own streams.
  [layer_.sampleBufferRenderer enqueueSampleBuffer:static_cast<const capture::SampleBuffer&>(*sample).buffer()];
}

void DisplayLayer::setVideoGravity(VideoGravity gravity) {
  layer_.videoGravity = gravity == VideoGravity::resize ? AVLayerVideoGravityResize : AVLayerVideoGravityResizeAspect;
}

void DisplayLayer::setFrame(const Rect& frame) { layer_.frame = foundation::nsRect(frame); }

}  // namespace platform::mac::views
