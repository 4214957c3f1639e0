// Frames of every kind that a capture service may send.
//
// Threads: immutable, free to use on any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "Platform/Capture.h"

namespace platform::simulated {

class Sample final : public SampleBuffer {
 public:
  Sample(bool isValid, std::optional<std::vector<FrameInfo>> attachments)
      : isValid_(isValid), attachments_(std::move(attachments)) {}

  [[nodiscard]] bool isValid() const override { return isValid_; }
  [[nodiscard]] std::optional<std::vector<FrameInfo>> attachments() const override { return attachments_; }

 private:
  const bool isValid_;
  const std::optional<std::vector<FrameInfo>> attachments_;
};

using SharedSample = std::shared_ptr<const Sample>;

[[nodiscard]] inline SharedSample frameWithStatus(std::int64_t status) {
  return std::make_shared<Sample>(true, std::vector{FrameInfo{status}});
}
[[nodiscard]] inline SharedSample frameWithStatus(FrameStatus status) {
  return frameWithStatus(std::to_underlying(status));
}
[[nodiscard]] inline SharedSample completeFrame() { return frameWithStatus(FrameStatus::complete); }
[[nodiscard]] inline SharedSample invalidFrame() {
  return std::make_shared<Sample>(false, std::vector{FrameInfo{std::to_underlying(FrameStatus::complete)}});
}
[[nodiscard]] inline SharedSample frameWithoutStatus() {
  return std::make_shared<Sample>(true, std::vector{FrameInfo{}});
}
[[nodiscard]] inline SharedSample frameWithoutAttachments() { return std::make_shared<Sample>(true, std::nullopt); }
[[nodiscard]] inline SharedSample frameWithEmptyAttachments() {
  return std::make_shared<Sample>(true, std::vector<FrameInfo>{});
}

}  // namespace platform::simulated
