// A view that passes everything AppKit asks of it on to a responder.
//
// AppKit gives a view that overrides `drawRect:` a bitmap as large as the view. So only the drawing view does.
//
// Threads: main thread only.
// Ownership: the view holds its responder weakly, and is a plain view once that is gone.
#pragma once

#import <AppKit/AppKit.h>

#include <memory>

#include "Platform/Views.h"

@interface QLFResponderView : NSView
- (instancetype)initWithFrame:(NSRect)frame responder:(std::weak_ptr<platform::ViewResponder>)responder;
- (std::shared_ptr<platform::ViewResponder>)responder;
@end

@interface QLFDrawingView : QLFResponderView
@end
