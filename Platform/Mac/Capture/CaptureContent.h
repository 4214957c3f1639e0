// Converts the capture service's content to values of the port, and those back to the service's own objects.
//
// Threads: `describe` main thread only, since it asks for the primary screen; the others any.
#pragma once

#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include "Platform/Capture.h"

namespace platform::mac::capture {

[[nodiscard]] ShareableContent describe(SCShareableContent* content);
// Null when the content does not contain the filter's display. Windows that it does not contain are gone, and skipped.
[[nodiscard]] SCContentFilter* contentFilter(const ContentFilter& filter, SCShareableContent* content);
[[nodiscard]] SCStreamConfiguration* streamConfiguration(const StreamConfiguration& configuration);

}  // namespace platform::mac::capture
