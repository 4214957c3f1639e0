// A frame that has no pixels: the desktop itself is to be seen where it is shown, since what was to be left out is not
// there any more.
#pragma once

#include "Platform/Capture.h"

namespace platform::linux::holes {

class SeeThroughFrame final : public SampleBuffer {
 public:
  [[nodiscard]] bool isValid() const override { return true; }
  [[nodiscard]] std::optional<std::vector<FrameInfo>> attachments() const override {
    return std::vector<FrameInfo>{{static_cast<std::int64_t>(FrameStatus::complete)}};
  }
};

}  // namespace platform::linux::holes
