// What a tree of views asks of the window that shows it.
//
// Threads: main thread only. Lifetime: a host leaves its tree (`ViewNode::leaveWindow`) before it is destroyed.
#pragma once

#include <memory>

#include "Platform/Capture.h"
#include "Platform/Geometry.h"

namespace platform::linux::views {

class ViewHost {
 public:
  virtual ~ViewHost() = default;
  // Something that the window's picture depends on has changed. Calls come in bursts: the host sets a flag and redraws
  // later.
  virtual void viewsChanged() = 0;
  // Shows the frame in the tree's display layer until the next one. False when it could not be shown.
  virtual bool presentSample(std::shared_ptr<const SampleBuffer> sample) = 0;
  // Takes the last frame away.
  virtual void forgetSamples() = 0;
  // Points in the global space.
  [[nodiscard]] virtual Rect windowFrame() const = 0;
};

}  // namespace platform::linux::views
