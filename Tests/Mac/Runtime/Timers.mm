// Timers of the main run loop. Each runs in the modes it was added to; the run loop owns it until it is invalidated.
#import <Foundation/Foundation.h>

#include <algorithm>
#include <string>

#import "Tests/Mac/Runtime/Dispatch.h"
#import "Tests/Mac/Runtime/Recorder.h"
#import "Tests/Mac/Runtime/Shared.h"
#import "Tests/Mac/Runtime/Timers.h"

NSRunLoopMode const NSRunLoopCommonModes = @"kCFRunLoopCommonModes";

namespace {
int timers = 0;
}  // namespace

int fake::liveTimers() { return timers; }

@implementation NSTimer {
  void (^_block)(NSTimer*);  // none once the timer is invalid
  double _interval;          // none of a timer that fires once
  double _due;
  fake::Modes _modes;
}

+ (NSTimer*)scheduledTimerWithTimeInterval:(NSTimeInterval)interval
                                   repeats:(BOOL)repeats
                                     block:(void (^)(NSTimer*))block {
  EXPECT_MAIN_THREAD();
  if (repeats ? !(interval > 0) : interval != 0) fake::misuse("a timer that repeats at once, or fires once but later");
  fake::record(repeats ? "a timer every " + std::to_string(interval) : "a timer for once");
  NSTimer* made = [[self alloc] init];
  made->_block = block;
  made->_interval = interval;
  made->_due = fake::now() + interval;
  made->_modes = fake::Modes::standard;
  ++timers;
  [made plan];
  return made;
}

- (void)dealloc {
  if (_block != nil) --timers;  // the run loop went first
}

- (void)plan {
  // A plan for other modes than the timer has by then is void.
  const fake::Modes modes = _modes;
  const double due = _due;
  fake::runLater(std::max(0.0, due - fake::now()), modes, [timer = self, modes, due] {
    if (timer->_modes == modes && timer->_due == due) [timer fire];
  });
}

- (void)fire {
  if (_block == nil) return;
  void (^block)(NSTimer*) = _block;
  block(self);
  if (_block == nil) return;
  if (_interval == 0) return [self invalidate];
  // Late firings are not made up for.
  do _due += _interval;
  while (_due <= fake::now());
  [self plan];
}

- (void)joinCommonModes {
  if (_block == nil || _modes == fake::Modes::common) return;
  _modes = fake::Modes::common;
  [self plan];
}

- (void)invalidate {
  EXPECT_MAIN_THREAD();
  if (_block == nil) return;
  _block = nil;
  --timers;
}

@end

@implementation NSRunLoop
+ (NSRunLoop*)mainRunLoop {
  return fake::sharedObject(self);
}
- (void)addTimer:(NSTimer*)timer forMode:(NSRunLoopMode)mode {
  EXPECT_MAIN_THREAD();
  if (mode != NSRunLoopCommonModes) fake::misuse("another mode than the common ones");
  [timer joinCommonModes];
}
@end
