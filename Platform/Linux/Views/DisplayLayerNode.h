// The part of a view that shows live frames. The picture itself belongs to the window: the layer only says where it
// goes and passes the frames on.
//
// Threads: main thread only. Failure: a frame that the window cannot show puts the renderer into the failed state until
// it is flushed. Frames that come outside a window are dropped, since nobody can see them.
#pragma once

#include "Platform/Views.h"

namespace platform::linux::views {

class ViewNode;

class DisplayLayerNode : public DisplayLayer, private SampleBufferRenderer {
 public:
  // The picture always fills the frame, which amounts to `resize`: live frames are made in the window's size.
  void setVideoGravity(VideoGravity gravity) override;
  void setFrame(const Rect& frame) override;
  [[nodiscard]] SampleBufferRenderer& sampleBufferRenderer() override { return *this; }

  [[nodiscard]] const Rect& frame() const { return frame_; }
  [[nodiscard]] VideoGravity videoGravity() const { return gravity_; }
  void setOwner(ViewNode* owner) { owner_ = owner; }

 private:
  [[nodiscard]] RendererStatus status() const override { return status_; }
  void flush() override;
  void enqueue(std::shared_ptr<const SampleBuffer> sample) override;

  Rect frame_;
  VideoGravity gravity_ = VideoGravity::resizeAspect;
  RendererStatus status_ = RendererStatus::unknown;
  ViewNode* owner_ = nullptr;
};

}  // namespace platform::linux::views
