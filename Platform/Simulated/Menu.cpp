#include <utility>

#include "Platform/Simulated/StatusBar.h"

namespace platform::simulated {

namespace {

const MenuItem* find(const std::vector<MenuItem>& items, const std::string& title) {
  for (const MenuItem& item : items) {
    if (!item.isSeparator && item.title == title) return &item;
    if (const MenuItem* const inside = find(item.submenu, title)) return inside;
  }
  return nullptr;
}

}  // namespace

void Menu::setDelegate(std::weak_ptr<MenuDelegate> delegate) {
  record_.call("menu: set delegate");
  delegate_ = std::move(delegate);
}

void Menu::removeAllItems() {
  record_.call("menu: remove all items");
  items_.clear();
}

void Menu::addItem(MenuItem item) {
  record_.expectMainThread("Menu::addItem");
  items_.push_back(std::move(item));
}

void Menu::open() {
  record_.call("menu: open");
  if (std::exchange(isOpen_, true)) misuse("a menu was opened that is open");
  runLoop_.setTracking(true);
  if (const auto delegate = delegate_.lock()) delegate->menuWillOpen(*this);
}

void Menu::close() {
  record_.call("menu: close");
  if (!std::exchange(isOpen_, false)) misuse("a menu was closed that is not open");
  runLoop_.setTracking(false);
  if (const auto delegate = delegate_.lock()) delegate->menuDidClose(*this);
}

bool Menu::choose(const std::string& title) {
  if (!isOpen_) open();
  const MenuItem* const found = item(title);
  // A copy: the action may rebuild the menu.
  const std::optional<MenuItem> chosen = found == nullptr ? std::nullopt : std::optional(*found);
  close();
  if (!chosen || !chosen->action) return false;
  chosen->action(*chosen);
  return true;
}

const MenuItem* Menu::item(const std::string& title) const { return find(items_, title); }

bool Menu::isEnabled(const MenuItem& item) {
  return !item.isSeparator && (static_cast<bool>(item.action) || !item.submenu.empty());
}

}  // namespace platform::simulated
