// Threads: main thread only.
#pragma once

#import <AppKit/AppKit.h>

#import "Tests/Mac/Fakes/Looks.h"

@interface NSMenuItem (Fake)
@property(readonly) fake::MenuLine line;
@property(readonly) BOOL canBeChosen;
- (void)act;
- (BOOL)hasTitle:(const std::string&)title;
@end

@interface NSMenu (Fake)
@property(readonly) std::vector<fake::MenuLine> lines;
- (NSMenuItem*)itemTitled:(const std::string&)title;
@end

namespace fake {

// Of the status item that was made last.
[[nodiscard]] NSMenu* shownMenu();

}  // namespace fake
