// Values of the language from those of the frameworks.
#pragma once

#import <AppKit/AppKit.h>

#include <string>

#include "Platform/Geometry.h"
#import "Tests/Mac/Runtime/Foundation.h"
#import "Tests/Mac/Runtime/Recorder.h"
#import "Tests/Mac/Runtime/Runtime.h"
#import "Tests/Mac/Runtime/Shared.h"

namespace fake {

[[nodiscard]] inline platform::Rect rectOf(CGRect rect) {
  return {{rect.origin.x, rect.origin.y}, {rect.size.width, rect.size.height}};
}
[[nodiscard]] inline CGRect cgRect(const platform::Rect& rect) {
  return {{rect.origin.x, rect.origin.y}, {rect.size.width, rect.size.height}};
}
// Of a number without superfluous digits.
[[nodiscard]] std::string wordOf(double number);
[[nodiscard]] std::string wordsOf(CGRect rect);

}  // namespace fake

@interface NSColor (Fake)
@property(readonly) std::string words;
@end

@interface NSFont (Fake)
@property(readonly) std::string words;
@end

@interface NSAttributedString (Fake)
@property(readonly) std::string text;
@property(readonly) std::string fontWords;
@property(readonly) std::string colorWords;
@end

// What a colour for layers stands for.
[[nodiscard]] std::string wordsOf(CGColorRef color);
