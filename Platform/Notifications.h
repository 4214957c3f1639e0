// Short messages that the desktop shows for a moment and then removes.
//
// Threads: main thread only. Returns at once.
// Failure: a desktop that cannot show such messages shows none.
#pragma once

#include <string>

namespace platform {

struct Notification {
  std::string title;
  std::string text;
  friend bool operator==(const Notification&, const Notification&) = default;
};

class Notifications {
 public:
  virtual ~Notifications() = default;
  // Shows it to this user once, and never again under this name, even if showing it failed. Shows nothing when that
  // cannot be remembered. `name` is a plain word.
  virtual void showOnce(const std::string& name, const Notification& notification) = 0;
};

}  // namespace platform
