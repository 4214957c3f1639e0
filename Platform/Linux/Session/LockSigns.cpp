#include "Platform/Linux/Session/LockSigns.h"

namespace platform::linux::session {

void LockSigns::set(std::string_view sign, bool shows) {
  if (shows) {
    shown_.emplace(sign);
    return;
  }
  const auto shown = shown_.find(sign);
  if (shown == shown_.end()) return;
  shown_.erase(shown);
  if (shown_.empty()) isRequested_ = false;
}

void LockSigns::requestGrewOld() {
  if (shown_.empty()) isRequested_ = false;
}

bool LockSigns::isLocked() const {
  const std::size_t windows = shown_.contains(lockerWindow) ? 1 : 0;
  return isRequested_ || shown_.size() > windows;
}

}  // namespace platform::linux::session
