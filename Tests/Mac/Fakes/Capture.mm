// The capture service: its content, which comes on a thread of its own, and its streams.
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include <algorithm>
#include <deque>
#include <memory>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/Capture.h"
#import "Tests/Mac/Fakes/World.h"
#import "Tests/Mac/Runtime/Dispatch.h"

namespace {

std::deque<std::function<void()>>& held() {
  static auto& answers = *new std::deque<std::function<void()>>;
  return answers;
}

}  // namespace

namespace fake {

void answer(const Answering& answering, std::function<void()> work) {
  if (answering.isHeld) {
    held().push_back(std::move(work));
  } else {
    onSystemThread(std::move(work));
  }
}

void World::dropHeld() {
  event([] { held().clear(); });
}

void World::answerHeld() {
  event([] {
    while (!held().empty()) {
      onSystemThread(std::move(held().front()));
      held().pop_front();
    }
  });
}

}  // namespace fake

@implementation SCRunningApplication {
 @public
  NSString* _identifier;
}
- (NSString*)bundleIdentifier {
  return _identifier;
}
@end

@implementation SCWindow {
 @public
  fake::ServiceWindow _listed;
}
- (CGWindowID)windowID {
  return _listed.number;
}
- (CGRect)frame {
  return fake::cgRect(_listed.frame);
}
- (NSInteger)windowLayer {
  return _listed.layer;
}
- (BOOL)isOnScreen {
  return _listed.isOnScreen;
}
- (SCRunningApplication*)owningApplication {
  if (!_listed.owner) return nil;
  SCRunningApplication* owner = [[SCRunningApplication alloc] init];
  owner->_identifier = [NSString stringOf:*_listed.owner];
  return owner;
}
@end

@implementation SCDisplay {
 @public
  CGDirectDisplayID _number;
}
- (CGDirectDisplayID)displayID {
  return _number;
}
@end

@implementation SCShareableContent {
  NSArray* _windows;
  NSArray* _displays;
}

// Of the windows there are now.
+ (SCShareableContent*)contentOf:(const fake::Capture&)capture onScreenOnly:(BOOL)onScreenOnly {
  std::vector<id> windows;
  for (const auto& listed : capture.windows) {
    if (onScreenOnly && !listed.isOnScreen) continue;
    SCWindow* window = [[SCWindow alloc] init];
    window->_listed = listed;
    windows.push_back(window);
  }
  std::vector<id> displays;
  for (const auto number : capture.displays) {
    SCDisplay* display = [[SCDisplay alloc] init];
    display->_number = number;
    displays.push_back(display);
  }
  SCShareableContent* content = [[SCShareableContent alloc] init];
  content->_windows = [NSArray arrayOf:windows];
  content->_displays = [NSArray arrayOf:displays];
  return content;
}

+ (void)getShareableContentExcludingDesktopWindows:(BOOL)excludesDesktop
                               onScreenWindowsOnly:(BOOL)onScreenOnly
                                 completionHandler:(void (^)(SCShareableContent*, NSError*))completion {
  EXPECT_MAIN_THREAD();
  auto& capture = fake::world().capture;
  capture.requests.emplace_back(excludesDesktop, onScreenOnly);
  const fake::Answering answering = capture.content;
  SCShareableContent* content = nil;
  NSError* error = nil;
  if (!answering.failure) content = [self contentOf:capture onScreenOnly:onScreenOnly];
  if (answering.failure && !answering.failsWithoutError) error = [NSError errorOf:*answering.failure];
  fake::answer(answering, [kept = [completion copy], content, error] {
    static_cast<void (^)(SCShareableContent*, NSError*)>(kept)(content, error);
  });
}

- (NSArray<SCWindow*>*)windows {
  return _windows;
}
- (NSArray<SCDisplay*>*)displays {
  return _displays;
}

@end

@implementation SCContentFilter {
  SCDisplay* _display;
  NSArray<SCWindow*>* _excluded;
}
- (instancetype)initWithDisplay:(SCDisplay*)display excludingWindows:(NSArray<SCWindow*>*)excluded {
  EXPECT_MAIN_THREAD();
  self = [super init];
  if (!self) return nil;
  _display = display;
  _excluded = excluded;
  return self;
}
- (std::uint32_t)displayNumber {
  return _display.displayID;
}
- (std::vector<std::uint32_t>)excludedNumbers {
  std::vector<std::uint32_t> numbers;
  for (SCWindow* window in _excluded) numbers.push_back(window.windowID);
  return numbers;
}
@end

@implementation SCStreamConfiguration
@end
