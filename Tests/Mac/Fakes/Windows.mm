#import "Tests/Mac/Fakes/Windows.h"

#include <algorithm>
#include <ranges>
#include <vector>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/Views.h"
#import "Tests/Mac/Fakes/World.h"

namespace {

// From the bottom to the top. The window server knows them by number, so that being shown keeps nothing alive.
std::vector<__unsafe_unretained NSWindow*>& stack() {
  static auto& windows = *new std::vector<__unsafe_unretained NSWindow*>;
  return windows;
}
__unsafe_unretained NSWindow* key = nil;
int windows = 0;

}  // namespace

@interface NSWindow ()
@property(readonly) fake::WindowLook look;
@end

@implementation NSWindow {
  NSRect _frame;
  NSView* _content;
  NSResponder* _responder;
  NSColor* _background;
  BOOL _ignoresMouse;
  fake::WindowLook _look;
}

- (instancetype)initWithContentRect:(NSRect)rect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)isDeferred {
  EXPECT_MAIN_THREAD();
  self = [super init];
  if (!self) return nil;
  ++windows;
  _frame = rect;
  _look.styleMask = style;
  _look.backing = static_cast<std::uint64_t>(backing);
  _look.isDeferred = isDeferred;
  _background = [NSColor windowBackgroundColor];
  return self;
}
- (void)dealloc {
  EXPECT_MAIN_THREAD();
  --windows;
  [_content moveToWindow:nil];
  if (std::erase(stack(), self) > 0) fake::misuse("a window went while it was on the screen");
  if (key == self) key = nil;
}

// Set once, and read by tests only.
#define LOOK_PROPERTY(Type, getter, setter, field)           \
  -(Type)getter {                                            \
    return static_cast<Type>(_look.field);                   \
  }                                                          \
  -(void)setter : (Type)value {                              \
    EXPECT_MAIN_THREAD();                                    \
    _look.field = static_cast<decltype(_look.field)>(value); \
  }
LOOK_PROPERTY(NSWindowLevel, level, setLevel, level)
LOOK_PROPERTY(NSWindowCollectionBehavior, collectionBehavior, setCollectionBehavior, behavior)
LOOK_PROPERTY(BOOL, hasShadow, setHasShadow, hasShadow)
LOOK_PROPERTY(BOOL, isOpaque, setOpaque, isOpaque)
LOOK_PROPERTY(BOOL, isReleasedWhenClosed, setReleasedWhenClosed, isReleasedWhenClosed)
LOOK_PROPERTY(BOOL, isMovable, setMovable, isMovable)
LOOK_PROPERTY(NSWindowAnimationBehavior, animationBehavior, setAnimationBehavior, animation)

- (BOOL)ignoresMouseEvents {
  return _look.ignoresMouse.value_or(false);
}
- (void)setIgnoresMouseEvents:(BOOL)ignores {
  EXPECT_MAIN_THREAD();
  _look.ignoresMouse = ignores;
}
- (NSWindowSharingType)sharingType {
  return static_cast<NSWindowSharingType>(_look.sharing.value_or(NSWindowSharingReadOnly));
}
- (void)setSharingType:(NSWindowSharingType)type {
  EXPECT_MAIN_THREAD();
  _look.sharing = static_cast<std::uint64_t>(type);
}
- (NSColor*)backgroundColor {
  return _background;
}
- (void)setBackgroundColor:(NSColor*)color {
  EXPECT_MAIN_THREAD();
  _background = color;
}

- (BOOL)isVisible {
  EXPECT_MAIN_THREAD();
  return std::ranges::find(stack(), self) != stack().end();
}
- (NSView*)contentView {
  return _content;
}
- (void)setContentView:(NSView*)view {
  EXPECT_MAIN_THREAD();
  [_content moveToWindow:nil];
  _content = view;
  view.frame = {.origin = {.x = 0, .y = 0}, .size = _frame.size};
  [view moveToWindow:self];
  if (fake::world().beliefs.laysOutAtOnce) [view layOutTree];
}
- (NSRect)frame {
  EXPECT_MAIN_THREAD();
  return _frame;
}
- (void)setFrame:(NSRect)frame display:(BOOL)display {
  EXPECT_MAIN_THREAD();
  _frame = frame;
  _content.frame = {.origin = {.x = 0, .y = 0}, .size = frame.size};
  if (display) [_content layOutTree];
}

- (BOOL)canBecomeKeyWindow {
  return NO;  // as AppKit has it for windows without a title
}
- (BOOL)canBecomeMainWindow {
  return NO;
}
- (void)orderFrontRegardless {
  EXPECT_MAIN_THREAD();
  std::erase(stack(), self);
  stack().push_back(self);
  std::ranges::stable_sort(stack(), {}, [](NSWindow* window) { return window.level; });
  [_content layOutTree];
}
- (void)makeKeyAndOrderFront:(id)sender {
  [self orderFrontRegardless];
  [self makeKeyWindow];
}
- (void)makeKeyWindow {
  EXPECT_MAIN_THREAD();
  if (self.canBecomeKeyWindow && fake::world().isActive) key = self;
}
- (BOOL)makeFirstResponder:(NSResponder*)responder {
  EXPECT_MAIN_THREAD();
  if (!responder.acceptsFirstResponder) return NO;
  _responder = responder;
  return YES;
}
- (NSResponder*)responder {
  return _responder;
}
- (void)orderOut:(id)sender {
  EXPECT_MAIN_THREAD();
  std::erase(stack(), self);
  if (key == self) key = nil;
}
- (NSRect)convertRectToScreen:(NSRect)rect {
  EXPECT_MAIN_THREAD();
  return {.origin = {.x = rect.origin.x + _frame.origin.x, .y = rect.origin.y + _frame.origin.y}, .size = rect.size};
}

- (fake::WindowLook)look {
  fake::WindowLook look = _look;
  look.frame = fake::rectOf(_frame);
  look.background = _background.words;
  look.canBecomeKey = self.canBecomeKeyWindow;
  look.canBecomeMain = self.canBecomeMainWindow;
  look.isKey = key == self;
  if (_content != nil) look.content = _content.look;
  return look;
}

@end

namespace fake {

NSWindow* keyWindow() { return key; }

NSWindow* clickedWindow(platform::Point at) {
  for (NSWindow* window : std::views::reverse(stack())) {
    if (!window.ignoresMouseEvents && rectOf(window.frame).contains(at)) return window;
  }
  return nil;
}

void layOutWindows() {
  for (NSWindow* window : std::vector(stack())) [window.contentView layOutTree];
}

std::vector<WindowLook> World::windowsOnScreen() const {
  std::vector<WindowLook> looks;
  @autoreleasepool {
    for (NSWindow* window : stack()) looks.push_back(window.look);
  }
  return looks;
}

int World::liveWindows() const { return windows; }

std::vector<std::string> World::draw() {
  std::vector<std::string> steps;
  @autoreleasepool {
    for (NSWindow* window : std::vector(stack())) [window.contentView drawTreeInto:steps];
  }
  return steps;
}

}  // namespace fake
