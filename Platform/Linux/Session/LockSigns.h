// Whether the session counts as locked, from signs that come from several places and none of which every desktop has.
//
// A request to lock counts at once, before any sign shows: the desktop's own locker may take a while. It ends with the
// signs that follow it, or is given up when none follows; for not every locker that answers a request tells of its end.
// Threads: plain value.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace platform::linux::session {

class LockSigns {
 public:
  // A locker's window confirms a request; without one it is no more than a large window.
  static constexpr std::string_view lockerWindow = "locker window";

  void set(std::string_view sign, bool shows);
  void lockRequested() { isRequested_ = true; }
  void unlockRequested() { isRequested_ = false; }
  // So long after the request, some sign should show.
  void requestGrewOld();

  [[nodiscard]] bool isLocked() const;
  [[nodiscard]] bool isRequested() const { return isRequested_; }

 private:
  std::set<std::string, std::less<>> shown_;
  bool isRequested_ = false;
};

}  // namespace platform::linux::session
