// The menus that other programs, such as a tray, show on our behalf: whether they are still open.
//
// Threads: main thread only; the callback comes there, from the run loop.
#pragma once

#include <functional>

namespace platform::linux::tray {

class HostMenus {
 public:
  virtual ~HostMenus() = default;
  // Calls back once, when a menu has been on screen and none is left there. Replaces an earlier callback; an empty one
  // cancels it.
  virtual void whenClosed(std::function<void()> callback) = 0;
  // Whether a menu that somebody waits for is on screen.
  [[nodiscard]] virtual bool isSeen() const = 0;
};

}  // namespace platform::linux::tray
