// Threads: main thread only.
#pragma once

#import <AppKit/AppKit.h>

#import "Tests/Mac/Fakes/Looks.h"

@interface NSView (Fake)
@property(readonly) fake::ViewLook look;
- (void)moveToWindow:(NSWindow*)window;
// As AppKit does it before it draws: whatever changed its size lays out.
- (void)layOutTree;
// What this view and those in it draw.
- (void)drawTreeInto:(std::vector<std::string>&)steps;
- (void)noteCentredHorizontally:(BOOL)horizontally in:(NSView*)superview;
@end
