// Keys and the pointer, and what sees them first.
#import <AppKit/AppKit.h>

#include <map>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/Windows.h"
#import "Tests/Mac/Fakes/World.h"

@interface FakeMonitor : NSObject {
 @public
  NSEvent* (^handler)(NSEvent*);
}
@end
@implementation FakeMonitor
@end

namespace {

std::vector<FakeMonitor*>& monitors() {
  static auto& installed = *new std::vector<FakeMonitor*>;
  return installed;
}

}  // namespace

@interface NSEvent () {
 @public
  NSPoint place;
  unsigned short code;
}
@end

@implementation NSEvent
+ (NSPoint)mouseLocation {
  EXPECT_MAIN_THREAD();
  const auto& pointer = fake::world().pointer;
  return {.x = pointer.x, .y = pointer.y};
}
- (NSPoint)locationInWindow {
  return place;
}
- (unsigned short)keyCode {
  return code;
}
+ (id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(NSEvent* (^)(NSEvent*))block {
  EXPECT_MAIN_THREAD();
  if (mask != NSEventMaskKeyDown) fake::misuse("a monitor of other events than key presses");
  FakeMonitor* monitor = [[FakeMonitor alloc] init];
  monitor->handler = [block copy];
  monitors().push_back(monitor);
  return monitor;
}
+ (void)removeMonitor:(id)monitor {
  EXPECT_MAIN_THREAD();
  if (std::erase(monitors(), monitor) == 0) fake::misuse("a monitor that is not installed was removed");
}
@end

namespace fake {
namespace {

// A drag stays with the window that it began in.
__weak NSWindow* dragged = nil;

NSEvent* eventAt(NSWindow* window, platform::Point at) {
  NSEvent* made = [[NSEvent alloc] init];
  made->place = {.x = at.x - window.frame.origin.x, .y = at.y - window.frame.origin.y};
  return made;
}

}  // namespace

int World::monitors() const { return static_cast<int>(::monitors().size()); }

bool World::pressKey(std::uint16_t code) {
  bool isTaken = true;
  event([&] {
    NSEvent* press = [[NSEvent alloc] init];
    press->code = code;
    for (FakeMonitor* monitor : std::vector(::monitors())) {
      press = monitor->handler(press);
      if (press == nil) return;
    }
    const int before = beeps;
    NSResponder* responder = keyWindow().responder;
    if (responder == nil) ++beeps;
    [responder keyDown:press];
    isTaken = beeps == before;
  });
  return isTaken;
}

void World::cancel() {
  event([] {
    NSResponder* responder = keyWindow().responder;
    if ([responder respondsToSelector:@selector(cancelOperation:)]) [responder cancelOperation:nil];
  });
}

void World::mouseDown(platform::Point at) {
  event([&] {
    NSWindow* window = clickedWindow(at);
    dragged = window;
    [window.contentView mouseDown:eventAt(window, at)];
  });
}

void World::mouseDragged(platform::Point at) {
  event([&] {
    if (NSWindow* window = dragged) [window.contentView mouseDragged:eventAt(window, at)];
  });
}

void World::mouseUp(platform::Point at) {
  event([&] {
    NSWindow* window = dragged;
    dragged = nil;
    if (window != nil) [window.contentView mouseUp:eventAt(window, at)];
  });
}

}  // namespace fake
