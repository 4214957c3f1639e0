// One captured frame.
//
// Threads: any; a sample buffer does not change.
// Ownership: holds the sample buffer until the last reference goes.
#pragma once

#import <CoreMedia/CoreMedia.h>

#include "Platform/Capture.h"

namespace platform::mac::capture {

class SampleBuffer final : public platform::SampleBuffer {
 public:
  explicit SampleBuffer(CMSampleBufferRef buffer);
  ~SampleBuffer() override;
  SampleBuffer(const SampleBuffer&) = delete;
  SampleBuffer& operator=(const SampleBuffer&) = delete;

  [[nodiscard]] bool isValid() const override;
  [[nodiscard]] std::optional<std::vector<FrameInfo>> attachments() const override;
  [[nodiscard]] CMSampleBufferRef buffer() const { return buffer_; }

 private:
  CMSampleBufferRef buffer_;
};

}  // namespace platform::mac::capture
