// Whether the session counts as locked, judged by signs from several places, none of which every desktop has.
//
// A request to lock counts at once, before any sign appears: the desktop's own locker may take a while. It ends with
// the signs that follow, or is given up when none does, since not every locker that answers a request reports its end.
// Threads: plain value.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace platform::linux::session {

class LockSigns {
 public:
  // A locker's window confirms a request; without a request it is only a large window.
  static constexpr std::string_view lockerWindow = "locker window";

  void set(std::string_view sign, bool shows);
  void lockRequested() { isRequested_ = true; }
  void unlockRequested() { isRequested_ = false; }
  // Call it so long after the request that a sign should have appeared.
  void requestGrewOld();

  [[nodiscard]] bool isLocked() const;
  [[nodiscard]] bool isRequested() const { return isRequested_; }

 private:
  std::set<std::string, std::less<>> shown_;
  bool isRequested_ = false;
};

}  // namespace platform::linux::session
