// Colours, fonts and text attributes in AppKit's terms.
//
// Threads: main thread only. A role stays a role: the colour follows the light or dark appearance where it is drawn.
#pragma once

#import <AppKit/AppKit.h>

#include "Platform/Canvas.h"
#include "Platform/Color.h"

namespace platform::mac::toolkit {

[[nodiscard]] NSColor* nsColor(const Color& color);
[[nodiscard]] NSFont* nsFont(const Font& font);
[[nodiscard]] NSDictionary<NSAttributedStringKey, id>* attributes(NSFont* font, NSColor* color);
[[nodiscard]] NSDictionary<NSAttributedStringKey, id>* attributes(const TextStyle& style);

}  // namespace platform::mac::toolkit
