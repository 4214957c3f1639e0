// What the capture service knows, as values of the port, and back to the service's own objects.
//
// Threads: `describe` main thread only, since it asks for the primary screen; the others any.
#pragma once

#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include "Platform/Capture.h"

namespace platform::mac {

[[nodiscard]] ShareableContent describe(SCShareableContent* content);
// Null when the content does not hold the filter's display. Windows that it does not hold are gone, and left out.
[[nodiscard]] SCContentFilter* contentFilter(const ContentFilter& filter, SCShareableContent* content);
[[nodiscard]] SCStreamConfiguration* streamConfiguration(const StreamConfiguration& configuration);

}  // namespace platform::mac
