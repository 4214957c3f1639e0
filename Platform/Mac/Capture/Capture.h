// The capture service: ScreenCaptureKit.
//
// Threads: calls come on the main thread; the completion of `shareableContent` comes there, too.
// Ownership: the service keeps the latest content, since filters are made from its own objects and the port names those
// by number only.
#pragma once

#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include <memory>

#include "Platform/Capture.h"

namespace platform::mac::capture {

class CaptureService final : public platform::CaptureService {
 public:
  void shareableContent(ShareableContentOptions options, ContentCompletion completion) override;
  std::shared_ptr<void> observeContent(std::function<void()> changed) override;
  std::shared_ptr<platform::CaptureStream> makeStream(const ContentFilter& filter,
                                                      const StreamConfiguration& configuration,
                                                      std::weak_ptr<StreamDelegate> delegate) override;

 private:
  struct LatestContent {
    SCShareableContent* content = nil;
  };

  // Shared with pending requests, which may return after the service is gone.
  std::shared_ptr<LatestContent> latest_ = std::make_shared<LatestContent>();
};

}  // namespace platform::mac::capture
