#include "Platform/Mac/Session/SessionLock.h"

#import <CoreGraphics/CoreGraphics.h>

#include <utility>

#include "Platform/Mac/Foundation/Bridge.h"

using platform::mac::session::LockState;

@interface QLFLockObserver : NSObject
- (instancetype)initWithState:(std::weak_ptr<LockState>)state;
- (void)screenLocked:(NSNotification*)notification;
- (void)screenUnlocked:(NSNotification*)notification;
- (void)screenSaverStarted:(NSNotification*)notification;
- (void)screenSaverStopped:(NSNotification*)notification;
@end

namespace {

bool sessionSaysLocked() {
  NSDictionary<NSString*, id>* session = (__bridge_transfer NSDictionary*)CGSessionCopyCurrentDictionary();
  return platform::mac::foundation::integerValue([session objectForKey:@"CGSSessionScreenIsLocked"]) == 1;
}

bool isWithheld(const LockState& state) { return state.isLocked || state.isScreenSaverActive; }

void change(const std::weak_ptr<LockState>& weakState, void (*apply)(LockState&)) {
  const auto state = weakState.lock();
  if (!state) return;
  const bool before = isWithheld(*state);
  apply(*state);
  if (isWithheld(*state) == before) return;
  for (const auto& observer : std::vector(state->observers)) observer();
}

void observe(QLFLockObserver* observer, NSString* name, SEL selector) {
  [[NSDistributedNotificationCenter defaultCenter] addObserver:observer
                                                      selector:selector
                                                          name:name
                                                        object:nil
                                            suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
}

}  // namespace

@implementation QLFLockObserver {
  std::weak_ptr<LockState> _state;
}

- (instancetype)initWithState:(std::weak_ptr<LockState>)state {
  self = [super init];
  if (self) _state = std::move(state);
  return self;
}

- (void)screenLocked:(NSNotification*)notification {
  change(_state, [](LockState& state) {
    state.isLocked = true;
    state.isConfirmed = false;
  });
}

- (void)screenUnlocked:(NSNotification*)notification {
  change(_state, [](LockState& state) { state.isLocked = state.isScreenSaverActive = false; });
}

- (void)screenSaverStarted:(NSNotification*)notification {
  change(_state, [](LockState& state) { state.isScreenSaverActive = true; });
}

- (void)screenSaverStopped:(NSNotification*)notification {
  change(_state, [](LockState& state) { state.isScreenSaverActive = false; });
}

@end

namespace platform::mac::session {

// A login item may be started behind the lock screen.
SessionLock::SessionLock()
    : state_(std::make_shared<LockState>()), observer_([[QLFLockObserver alloc] initWithState:state_]) {
  state_->isLocked = state_->isConfirmed = sessionSaysLocked();
  observe(observer_, @"com.apple.screenIsLocked", @selector(screenLocked:));
  observe(observer_, @"com.apple.screenIsUnlocked", @selector(screenUnlocked:));
  observe(observer_, @"com.apple.screensaver.didstart", @selector(screenSaverStarted:));
  observe(observer_, @"com.apple.screensaver.didstop", @selector(screenSaverStopped:));
}

bool SessionLock::isLocked() const {
  if (state_->isLocked) {
    const bool isSaidToBe = sessionSaysLocked();
    if (state_->isConfirmed && !isSaidToBe) state_->isLocked = state_->isScreenSaverActive = false;
    state_->isConfirmed = isSaidToBe;
  }
  return isWithheld(*state_);
}

void SessionLock::observeChanges(std::function<void()> observer) { state_->observers.push_back(std::move(observer)); }

}  // namespace platform::mac::session
