#include "Platform/Mac/SessionLock.h"

#include <utility>

using platform::mac::LockState;

@interface QLFLockObserver : NSObject
- (instancetype)initWithState:(std::weak_ptr<LockState>)state;
- (void)screenLocked:(NSNotification*)notification;
- (void)screenUnlocked:(NSNotification*)notification;
- (void)screenSaverStarted:(NSNotification*)notification;
- (void)screenSaverStopped:(NSNotification*)notification;
@end

namespace {

void change(const std::weak_ptr<LockState>& weakState, bool LockState::* flag, bool value) {
  const auto state = weakState.lock();
  if (!state || std::exchange((*state).*flag, value) == value) return;
  for (const auto& observer : std::vector(state->observers)) observer();
}

void observe(QLFLockObserver* observer, NSString* name, SEL selector) {
  [[NSDistributedNotificationCenter defaultCenter] addObserver:observer selector:selector name:name object:nil];
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
  change(_state, &LockState::isLocked, true);
}

- (void)screenUnlocked:(NSNotification*)notification {
  change(_state, &LockState::isLocked, false);
}

- (void)screenSaverStarted:(NSNotification*)notification {
  change(_state, &LockState::isScreenSaverActive, true);
}

- (void)screenSaverStopped:(NSNotification*)notification {
  change(_state, &LockState::isScreenSaverActive, false);
}

@end

namespace platform::mac {

SessionLock::SessionLock()
    : state_(std::make_shared<LockState>()), observer_([[QLFLockObserver alloc] initWithState:state_]) {
  observe(observer_, @"com.apple.screenIsLocked", @selector(screenLocked:));
  observe(observer_, @"com.apple.screenIsUnlocked", @selector(screenUnlocked:));
  observe(observer_, @"com.apple.screensaver.didstart", @selector(screenSaverStarted:));
  observe(observer_, @"com.apple.screensaver.didstop", @selector(screenSaverStopped:));
}

bool SessionLock::isLocked() const { return state_->isLocked || state_->isScreenSaverActive; }

void SessionLock::observeChanges(std::function<void()> observer) { state_->observers.push_back(std::move(observer)); }

}  // namespace platform::mac
