#include "Platform/Linux/Tray/PopUpMenus.h"

#include <algorithm>
#include <utility>

namespace platform::x11 {

void PopUpMenus::whenClosed(std::function<void()> callback) {
  closed_ = std::move(callback);
  wasOpen_ = false;
}

void PopUpMenus::settle() {
  if (!closed_) return;
  // A host announces the opening before its window is there.
  const bool isOpen =
      std::ranges::any_of(scene_.windows(), [this](const SceneWindow& window) { return isMenu(window); });
  if (!isOpen && wasOpen_) {
    std::exchange(closed_, nullptr)();
  } else {
    wasOpen_ = isOpen;
  }
}

bool PopUpMenus::isMenu(const SceneWindow& window) const {
  if (!window.isViewable || !window.isOverrideRedirect || windows_.isOwn(window.id)) return false;
  const auto properties = windows_.properties(window.id);
  if (!properties || properties->types.empty()) return false;
  const WindowType type = properties->types.front();
  return type == WindowType::menu || type == WindowType::popupMenu || type == WindowType::dropdownMenu;
}

}  // namespace platform::x11
