// Borderless windows and the monitor of key presses.
//
// Threads: main thread only.
// Ownership: a window that is dropped leaves the screen; AppKit may keep its object a little longer. A monitor lives
// until it is removed, whatever happens to its owner.
#pragma once

#import <AppKit/AppKit.h>

#include <cstdint>
#include <map>

#include "Platform/Windows.h"

namespace platform::mac::windows {

class Windows final : public platform::Windows {
 public:
  std::unique_ptr<Window> makeWindow(const WindowAttributes& attributes) override;
  [[nodiscard]] WindowLevel shieldingLevel() const override;
  // The lock screen is not a window that applications can cover.
  void setMayOverlap(std::function<bool(const CaptureWindow&)> /*mayOverlap*/) override {}
  EventMonitor addLocalKeyDownMonitor(std::function<bool(const KeyEvent&)> handler) override;
  void removeMonitor(EventMonitor monitor) override;

 private:
  std::map<EventMonitor, id> monitors_;
  std::uint64_t lastMonitor_ = 0;
};

}  // namespace platform::mac::windows
