#include "Platform/Linux/Tray/PopUpMenus.h"

#include <algorithm>
#include <utility>

namespace platform::linux::tray {

void PopUpMenus::whenClosed(std::function<void()> callback) {
  closed_ = std::move(callback);
  wasOpen_ = false;
}

void PopUpMenus::settle() {
  if (!closed_) return;
  // A host announces the opening before its window exists.
  const bool isOpen =
      std::ranges::any_of(scene_.windows(), [this](const scene::SceneWindow& window) { return isMenu(window); });
  if (!isOpen && wasOpen_) {
    std::exchange(closed_, nullptr)();
  } else {
    wasOpen_ = isOpen;
  }
}

bool PopUpMenus::isMenu(const scene::SceneWindow& window) const {
  if (!window.isViewable || !window.isOverrideRedirect || windows_.isOwn(window.id)) return false;
  const auto properties = windows_.properties(window.id);
  if (!properties || properties->types.empty()) return false;
  const scene::WindowType type = properties->types.front();
  return type == scene::WindowType::menu || type == scene::WindowType::popupMenu ||
         type == scene::WindowType::dropdownMenu;
}

}  // namespace platform::linux::tray
