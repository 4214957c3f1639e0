// A menu of the menu bar.
//
// Threads: main thread only.
// Ownership: the menu keeps the values of its items; the AppKit items hold them weakly.
// Enabling: AppKit's automatic one. An item is enabled when its target answers its action.
#pragma once

#import <AppKit/AppKit.h>

#include <memory>
#include <vector>

#include "Platform/StatusBar.h"

@class QLFMenuDelegate;

namespace platform::mac::tray {

class Menu final : public platform::Menu {
 public:
  [[nodiscard]] static std::shared_ptr<Menu> make();
  void setDelegate(std::weak_ptr<MenuDelegate> delegate) override;
  void removeAllItems() override;
  void addItem(MenuItem item) override;
  [[nodiscard]] NSMenu* menu() const { return menu_; }

 private:
  Menu() = default;
  [[nodiscard]] NSMenuItem* makeItem(MenuItem item);

  NSMenu* menu_ = [[NSMenu alloc] init];
  QLFMenuDelegate* delegate_ = nil;  // AppKit does not own it
  std::weak_ptr<Menu> self_;
  std::vector<std::shared_ptr<const MenuItem>> items_;  // including those of submenus
};

}  // namespace platform::mac::tray
