#include "Platform/Mac/Capture/Permission.h"

#import <CoreGraphics/CoreGraphics.h>

namespace platform::mac::capture {

bool ScreenCaptureAccess::preflight() { return CGPreflightScreenCaptureAccess(); }

bool ScreenCaptureAccess::request() { return CGRequestScreenCaptureAccess(); }

}  // namespace platform::mac::capture
