// One ScreenCaptureKit stream.
//
// Threads: calls on the main thread; frames come on the queue that the output was added with, the end on any thread.
// Ownership: the forwarder that the service calls holds output and delegate weakly; a stop under way keeps stream and
// forwarder alive until it is done.
// Failure: a stream whose display went away before it was made fails when it is started.
#pragma once

#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include <memory>

#include "Platform/Capture.h"

@class QLFStreamForwarder;

namespace platform::mac::capture {

class CaptureStream final : public platform::CaptureStream {
 public:
  CaptureStream(SCContentFilter* filter, SCStreamConfiguration* configuration, std::weak_ptr<StreamDelegate> delegate);
  ~CaptureStream() override;
  CaptureStream(const CaptureStream&) = delete;
  CaptureStream& operator=(const CaptureStream&) = delete;

  std::expected<void, Error> addOutput(std::weak_ptr<StreamOutput> output, StreamOutputType type,
                                       std::shared_ptr<platform::SerialQueue> queue) override;
  void startCapture(Completion completion) override;
  void stopCapture(Completion completion) override;
  void admit(const std::vector<std::uint32_t>& windowIDs) override;

 private:
  QLFStreamForwarder* forwarder_;
  SCStream* stream_ = nil;
  dispatch_queue_t queue_ = nil;
  bool isRunning_ = false;
};

}  // namespace platform::mac::capture
