// Makes the application's windows: those that the pointer passes through on overlay windows of X, the others on Qt
// widgets.
//
// Threads: main thread only.
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "Platform/Linux/Cover/ClickThroughWindow.h"
#include "Platform/Linux/Input/KeyMonitors.h"
#include "Platform/Linux/Input/KeyboardFocus.h"
#include "Platform/Windows.h"

namespace platform::linux {

class DesktopWindows final : public Windows {
 public:
  DesktopWindows(const cover::ClickThroughWindow::Surroundings& surroundings, input::KeyboardFocus::Manner keyboard)
      : surroundings_(surroundings), focus_(keyboard) {}

  std::unique_ptr<Window> makeWindow(const WindowAttributes& attributes) override;
  // X11 has no levels: windows at this one are kept on top by raising them.
  [[nodiscard]] WindowLevel shieldingLevel() const override { return 2147483628; }
  void setMayOverlap(std::function<bool(const CaptureWindow&)> mayOverlap) override {
    surroundings_.stage.setMayOverlap(std::move(mayOverlap));
  }
  EventMonitor addLocalKeyDownMonitor(std::function<bool(const KeyEvent&)> handler) override;
  void removeMonitor(EventMonitor monitor) override;

 private:
  cover::ClickThroughWindow::Surroundings surroundings_;
  input::KeyMonitors keyMonitors_;
  input::KeyboardFocus focus_;
};

}  // namespace platform::linux
