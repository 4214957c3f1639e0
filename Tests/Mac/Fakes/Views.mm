#import "Tests/Mac/Fakes/Views.h"

#include <algorithm>
#include <string>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/Drawing.h"
#import "Tests/Mac/Fakes/Layers.h"
#import "Tests/Mac/Fakes/World.h"

@implementation NSResponder
- (BOOL)acceptsFirstResponder {
  EXPECT_MAIN_THREAD();
  return NO;
}
- (void)mouseDown:(NSEvent*)event {
  EXPECT_MAIN_THREAD();
}
- (void)mouseDragged:(NSEvent*)event {
  EXPECT_MAIN_THREAD();
}
- (void)mouseUp:(NSEvent*)event {
  EXPECT_MAIN_THREAD();
}
- (void)keyDown:(NSEvent*)event {
  EXPECT_MAIN_THREAD();
  ++fake::world().beeps;
}
@end

@implementation NSCursor
+ (NSCursor*)crosshairCursor {
  EXPECT_MAIN_THREAD();
  return fake::sharedObject(self);
}
@end

@interface NSLayoutAnchor () {
 @public
  __unsafe_unretained NSView* view;
  BOOL isHorizontal;
}
@end

@interface NSLayoutConstraint () {
 @public
  NSLayoutAnchor* first;
  NSLayoutAnchor* second;
}
@end

@implementation NSLayoutAnchor
- (NSLayoutConstraint*)constraintEqualToAnchor:(NSLayoutAnchor*)anchor {
  EXPECT_MAIN_THREAD();
  NSLayoutConstraint* made = [[NSLayoutConstraint alloc] init];
  made->first = self;
  made->second = anchor;
  return made;
}
@end
@implementation NSLayoutXAxisAnchor
@end
@implementation NSLayoutYAxisAnchor
@end

@implementation NSLayoutConstraint
+ (void)activateConstraints:(NSArray<NSLayoutConstraint*>*)constraints {
  EXPECT_MAIN_THREAD();
  for (NSLayoutConstraint* constraint in constraints) {
    if (constraint->first->isHorizontal != constraint->second->isHorizontal)
      fake::misuse("a constraint across the axes");
    [constraint->first->view noteCentredHorizontally:constraint->first->isHorizontal in:constraint->second->view];
  }
}
@end

@implementation NSView {
  NSRect _frame;
  NSRect _bounds;
  std::vector<NSView*> _subviews;
  __unsafe_unretained NSView* _superview;
  __unsafe_unretained NSWindow* _window;
  BOOL _wantsLayer;
  CALayer* _layer;
  BOOL _needsLayout;
  BOOL _needsDisplay;
  BOOL _isCentredHorizontally;
  BOOL _isCentredVertically;
  std::vector<std::string> _cursors;
}

- (instancetype)initWithFrame:(NSRect)frame {
  EXPECT_MAIN_THREAD();
  self = [super init];
  if (!self) return nil;
  _frame = frame;
  _bounds = {.origin = {.x = 0, .y = 0}, .size = frame.size};
  _translatesAutoresizingMaskIntoConstraints = YES;
  return self;
}
- (void)dealloc {
  EXPECT_MAIN_THREAD();
  for (NSView* view : _subviews) view->_superview = nil;
}

// Anchors belong to the layout: asked for anew each time, they name the same line.
- (NSLayoutXAxisAnchor*)centerXAnchor {
  EXPECT_MAIN_THREAD();
  NSLayoutXAxisAnchor* anchor = [[NSLayoutXAxisAnchor alloc] init];
  anchor->view = self;
  anchor->isHorizontal = YES;
  return anchor;
}
- (NSLayoutYAxisAnchor*)centerYAnchor {
  EXPECT_MAIN_THREAD();
  NSLayoutYAxisAnchor* anchor = [[NSLayoutYAxisAnchor alloc] init];
  anchor->view = self;
  return anchor;
}
- (void)noteCentredHorizontally:(BOOL)horizontally in:(NSView*)superview {
  if (superview != _superview) fake::misuse("a constraint between views that are not in one another");
  if (self.translatesAutoresizingMaskIntoConstraints) fake::misuse("constraints against those of the resize mask");
  (horizontally ? _isCentredHorizontally : _isCentredVertically) = YES;
  _needsLayout = YES;
}

- (NSRect)frame {
  EXPECT_MAIN_THREAD();
  return _frame;
}
- (void)setFrame:(NSRect)frame {
  EXPECT_MAIN_THREAD();
  const NSSize before = _frame.size;
  _frame = frame;
  _bounds.size = frame.size;
  const NSSize grown = {.width = frame.size.width - before.width, .height = frame.size.height - before.height};
  if (grown.width == 0 && grown.height == 0) return;
  for (NSView* view : _subviews) {
    NSRect changed = view->_frame;
    if ((view.autoresizingMask & NSViewWidthSizable) != 0) changed.size.width += grown.width;
    if ((view.autoresizingMask & NSViewHeightSizable) != 0) changed.size.height += grown.height;
    view.frame = changed;
  }
  _needsLayout = YES;
  _needsDisplay = YES;
  if (_window != nil && fake::world().beliefs.laysOutAtOnce) [self layOutTree];
}
- (NSRect)bounds {
  EXPECT_MAIN_THREAD();
  return _bounds;
}
- (void)setBounds:(NSRect)bounds {
  fake::misuse("the application sets no bounds");
}
- (BOOL)wantsLayer {
  return _wantsLayer;
}
- (void)setWantsLayer:(BOOL)wants {
  EXPECT_MAIN_THREAD();
  _wantsLayer = wants;
  if (wants && _layer == nil) self.layer = [CALayer layer];
}
- (CALayer*)layer {
  EXPECT_MAIN_THREAD();
  return _layer;
}
- (void)setLayer:(CALayer*)layer {
  EXPECT_MAIN_THREAD();
  _layer = layer;
  [layer becomeBackingLayer];
}
- (BOOL)needsDisplay {
  return _needsDisplay;
}
- (void)setNeedsDisplay:(BOOL)needs {
  EXPECT_MAIN_THREAD();
  _needsDisplay = needs;
}
- (NSWindow*)window {
  EXPECT_MAIN_THREAD();
  return _window;
}

- (void)addSubview:(NSView*)view {
  EXPECT_MAIN_THREAD();
  _subviews.push_back(view);
  view->_superview = self;
  [view moveToWindow:_window];
  _needsLayout = YES;
}
- (void)moveToWindow:(NSWindow*)window {
  _window = window;
  _needsLayout = YES;
  _needsDisplay = YES;
  _cursors.clear();
  if (window != nil) [self resetCursorRects];
  for (NSView* view : _subviews) [view moveToWindow:window];
}
- (void)layOutTree {
  if (_needsLayout) {
    _needsLayout = NO;
    [self layout];
  }
  for (NSView* view : _subviews) [view layOutTree];
}
- (void)layout {
  EXPECT_MAIN_THREAD();
}
- (void)drawRect:(NSRect)dirtyRect {
  EXPECT_MAIN_THREAD();
}
// AppKit takes the override alone for a wish to draw.
- (BOOL)drawsItself {
  const SEL draw = @selector(drawRect:);
  return class_getMethodImplementation(object_getClass(self), draw) !=
         class_getMethodImplementation([NSView class], draw);
}
- (void)drawTreeInto:(std::vector<std::string>&)steps {
  if (_hidden) return;
  _needsDisplay = NO;
  const auto drawn = fake::drawnBy([self] { [self drawRect:self->_bounds]; });
  steps.insert(steps.end(), drawn.begin(), drawn.end());
  for (NSView* view : _subviews) [view drawTreeInto:steps];
}

- (void)resetCursorRects {
  EXPECT_MAIN_THREAD();
}
- (void)addCursorRect:(NSRect)rect cursor:(NSCursor*)cursor {
  EXPECT_MAIN_THREAD();
  if (cursor != [NSCursor crosshairCursor]) fake::misuse("an unknown cursor");
  _cursors.push_back("crosshair " + fake::wordsOf(rect));
}

// The place of the view's corner in the window.
- (NSPoint)cornerInWindow {
  NSPoint corner{.x = 0, .y = 0};
  for (NSView* view = self; view != nil; view = view->_superview) {
    corner.x += view->_frame.origin.x;
    corner.y += view->_frame.origin.y;
  }
  return corner;
}
- (NSPoint)convertPoint:(NSPoint)point fromView:(NSView*)view {
  EXPECT_MAIN_THREAD();
  if (view != nil) fake::misuse("conversion from another view");
  const NSPoint corner = [self cornerInWindow];
  return {.x = point.x - corner.x, .y = point.y - corner.y};
}
- (NSRect)convertRect:(NSRect)rect toView:(NSView*)view {
  EXPECT_MAIN_THREAD();
  if (view != nil) fake::misuse("conversion to another view");
  const NSPoint corner = [self cornerInWindow];
  return {.origin = {.x = rect.origin.x + corner.x, .y = rect.origin.y + corner.y}, .size = rect.size};
}

- (fake::ViewLook)look {
  fake::ViewLook look{.kind = class_getName(object_getClass(self)),
                      .frame = fake::rectOf(_frame),
                      .bounds = fake::rectOf(_bounds),
                      .resizeMask = self.autoresizingMask,
                      .isHidden = static_cast<bool>(_hidden),
                      .hasLayer = _layer != nil,
                      .hasBitmap = static_cast<bool>([self drawsItself]),
                      .background = _layer.backgroundWords,
                      .borderWidth = _layer.borderWidth,
                      .border = _layer.borderWords,
                      .isCentred = _isCentredHorizontally && _isCentredVertically,
                      .cursors = _cursors};
  for (NSView* view : _subviews) look.subviews.push_back(view.look);
  if (_layer != nil) {
    for (CALayer* layer : _layer.sublayers) look.sublayers.push_back(layer.look);
  }
  return look;
}

@end

@implementation NSControl
@end

@implementation NSTextField
+ (instancetype)labelWithString:(NSString*)text {
  EXPECT_MAIN_THREAD();
  NSTextField* made = [[self alloc] initWithFrame:{.origin = {.x = 0, .y = 0}, .size = {.width = 0, .height = 0}}];
  made.stringValue = text;
  return made;
}
- (fake::ViewLook)look {
  fake::ViewLook look = [super look];
  look.text = self.stringValue.text;
  look.font = self.font.words;
  look.textColor = self.textColor.words;
  look.isTextCentred = self.alignment == NSTextAlignmentCenter;
  return look;
}
@end

@implementation NSButton
@end
