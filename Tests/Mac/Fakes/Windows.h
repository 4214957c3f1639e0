// Threads: main thread only.
#pragma once

#import <AppKit/AppKit.h>

#include "Platform/Geometry.h"

namespace fake {

// The window that a click at this place reaches; none where it reaches another application.
[[nodiscard]] NSWindow* clickedWindow(platform::Point at);
[[nodiscard]] NSWindow* keyWindow();
// Layout of whatever is on the screen, as at the end of each turn.
void layOutWindows();

}  // namespace fake

@interface NSWindow (Fake)
@property(readonly) NSResponder* responder;
@end
