// The lock screen and the screen saver of macOS, from the notifications that the login window posts to all processes.
//
// The system documents no names for them; these have been the same for many releases.
//
// Threads: main thread only.
// Initial state: unlocked until the first notification, since a program can only be started in an open session.
#pragma once

#import <Foundation/Foundation.h>

#include <memory>
#include <vector>

#include "Platform/SessionLock.h"

@class QLFLockObserver;

namespace platform::mac {

struct LockState {
  bool isLocked = false;
  bool isScreenSaverActive = false;
  std::vector<std::function<void()>> observers;
};

class SessionLock final : public platform::SessionLock {
 public:
  SessionLock();
  [[nodiscard]] bool isLocked() const override;
  void observeChanges(std::function<void()> observer) override;

 private:
  std::shared_ptr<LockState> state_;
  QLFLockObserver* observer_;
};

}  // namespace platform::mac
