// The lock screen and the screen saver of macOS, from the notifications that the login window posts to all processes,
// and from what the window server says of the session.
//
// The system documents no names for them; these have been the same for many releases. The notifications are delivered
// at once, also while another application is in front, which is always so here. One may be lost all the same: so the
// end of a lock ends the screen saver as well, and a lock that the session has confirmed is over when the session says
// so. Threads: main thread only.
#pragma once

#import <Foundation/Foundation.h>

#include <memory>
#include <vector>

#include "Platform/SessionLock.h"

@class QLFLockObserver;

namespace platform::mac::session {

struct LockState {
  bool isLocked = false;
  bool isConfirmed = false;  // the session says so, too: only then does its silence mean the end
  bool isScreenSaverActive = false;
  std::vector<std::function<void()>> observers;
};

class SessionLock final : public platform::SessionLock {
 public:
  SessionLock();
  // While nothing was heard of a lock this costs nothing; otherwise the session is asked.
  [[nodiscard]] bool isLocked() const override;
  void observeChanges(std::function<void()> observer) override;

 private:
  std::shared_ptr<LockState> state_;
  QLFLockObserver* observer_;
};

}  // namespace platform::mac::session
