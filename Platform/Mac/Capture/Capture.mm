#include "Platform/Mac/Capture/Capture.h"

#include <utility>

#include "Platform/Mac/Capture/CaptureContent.h"
#include "Platform/Mac/Capture/CaptureStream.h"
#include "Platform/Mac/Foundation/Bridge.h"

namespace platform::mac::capture {

void CaptureService::shareableContent(ShareableContentOptions options, ContentCompletion completion) {
  const std::weak_ptr<LatestContent> weakLatest = latest_;
  auto received = ^(SCShareableContent* content, NSError* error) {
    // On the main thread: the latest content lives there, and the screens may be asked for.
    dispatch_async(dispatch_get_main_queue(), ^{
      if (content == nil) {
        completion(std::unexpected(foundation::fromNSError(error)));
        return;
      }
      if (const auto latest = weakLatest.lock()) latest->content = content;
      completion(describe(content));
    });
  };
  [SCShareableContent getShareableContentExcludingDesktopWindows:options.excludingDesktopWindows
                                             onScreenWindowsOnly:options.onScreenWindowsOnly
                                               completionHandler:received];
}

// The service does not announce changes of its windows.
std::shared_ptr<void> CaptureService::observeContent(std::function<void()> /*changed*/) { return nullptr; }

std::shared_ptr<platform::CaptureStream> CaptureService::makeStream(const ContentFilter& filter,
                                                                    const StreamConfiguration& configuration,
                                                                    std::weak_ptr<StreamDelegate> delegate) {
  return std::make_shared<CaptureStream>(contentFilter(filter, latest_->content), streamConfiguration(configuration),
                                         std::move(delegate));
}

}  // namespace platform::mac::capture
