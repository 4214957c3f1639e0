// Whether the session is hidden from whoever sits at the screen: locked, behind a screen saver, or blanked.
//
// Threads: main thread only; observers are called there, from the event loop.
// Failure: a desktop that cannot tell counts as never locked.
#pragma once

#include <functional>

namespace platform {

class SessionLock {
 public:
  virtual ~SessionLock() = default;
  // What was last heard, or what the session says right away.
  [[nodiscard]] virtual bool isLocked() const = 0;
  // Called after every change, for the life of the process.
  virtual void observeChanges(std::function<void()> observer) = 0;
};

}  // namespace platform
