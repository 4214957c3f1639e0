#include "Platform/Linux/DesktopWindows.h"

#include <utility>

#include "Platform/Linux/Toolkit/ScreenGrab.h"
#include "Platform/Linux/Widgets/WidgetWindow.h"

namespace platform::linux {

std::unique_ptr<Window> DesktopWindows::makeWindow(const WindowAttributes& attributes) {
  if (attributes.ignoresMouseEvents) return std::make_unique<cover::ClickThroughWindow>(surroundings_, attributes);
  auto grab = [&connection = surroundings_.connection](const xcb::PixelRect& part) {
    return toolkit::grabScreen(connection, part);
  };
  return std::make_unique<widgets::WidgetWindow>(attributes, surroundings_.screens, focus_, std::move(grab));
}

EventMonitor DesktopWindows::addLocalKeyDownMonitor(std::function<bool(const KeyEvent&)> handler) {
  return keyMonitors_.add(std::move(handler));
}

void DesktopWindows::removeMonitor(EventMonitor monitor) { keyMonitors_.remove(monitor); }

}  // namespace platform::linux
