#include "Platform/Mac/Views/ResponderView.h"

#include <utility>

#include "Platform/Mac/Foundation/Bridge.h"
#include "Platform/Mac/Views/Canvas.h"

@implementation QLFResponderView {
  std::weak_ptr<platform::ViewResponder> _responder;
}

- (instancetype)initWithFrame:(NSRect)frame responder:(std::weak_ptr<platform::ViewResponder>)responder {
  self = [super initWithFrame:frame];
  if (self) _responder = std::move(responder);
  return self;
}

- (std::shared_ptr<platform::ViewResponder>)responder {
  return _responder.lock();
}

- (void)layout {
  [super layout];
  if (const auto responder = _responder.lock()) responder->layout();
}

- (void)resetCursorRects {
  [super resetCursorRects];
  const auto responder = _responder.lock();
  if (!responder || responder->cursor() != platform::Cursor::crosshair) return;
  [self addCursorRect:self.bounds cursor:[NSCursor crosshairCursor]];
}

- (BOOL)acceptsFirstResponder {
  const auto responder = _responder.lock();
  return responder && responder->acceptsFirstResponder();
}

- (void)mouseDown:(NSEvent*)event {
  if (const auto responder = _responder.lock()) {
    responder->mouseDown(platform::mac::foundation::fromNSPoint(event.locationInWindow));
  }
}

- (void)mouseDragged:(NSEvent*)event {
  if (const auto responder = _responder.lock()) {
    responder->mouseDragged(platform::mac::foundation::fromNSPoint(event.locationInWindow));
  }
}

- (void)mouseUp:(NSEvent*)event {
  if (const auto responder = _responder.lock()) {
    responder->mouseUp(platform::mac::foundation::fromNSPoint(event.locationInWindow));
  }
}

- (void)keyDown:(NSEvent*)event {
  const auto responder = _responder.lock();
  if (!responder || !responder->keyDown({event.keyCode})) [super keyDown:event];
}

- (void)cancelOperation:(id)sender {
  if (const auto responder = _responder.lock()) responder->cancelOperation();
}

@end

@implementation QLFDrawingView

// The whole view, whatever part of it is dirty.
- (void)drawRect:(NSRect)dirtyRect {
  platform::mac::views::Canvas canvas;
  if (const auto responder = [self responder]) responder->draw(canvas);
}

@end
