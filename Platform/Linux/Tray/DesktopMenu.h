// The status menu as a Qt menu, shown by a tray's host or by this process.
//
// Threads: main thread only. Actions run from the event loop, after the menu has closed, so the menu that they came
// from is no longer on the stack.
#pragma once

#include <QMenu>
#include <memory>
#include <utility>
#include <vector>

#include "Platform/Linux/Tray/MenuLines.h"
#include "Platform/Linux/Tray/MenuSession.h"
#include "Platform/StatusBar.h"

namespace platform::linux::tray {

class DesktopMenu : public Menu {
 public:
  DesktopMenu(RunLoop& runLoop, HostMenus& hostMenus);

  void setDelegate(std::weak_ptr<MenuDelegate> delegate) override { delegate_ = std::move(delegate); }
  // What these change shows at the next opening.
  void removeAllItems() override { items_.clear(); }
  void addItem(MenuItem item) override { items_.push_back(std::move(item)); }

  [[nodiscard]] QMenu& qtMenu() { return menu_; }
  // Lists its lines without opening it: some hosts ask for them before they announce the first opening, and replace an
  // empty menu by one of their own.
  void list();
  // Opens it at the pointer, in this process.
  void popUpAtPointer();
  // Call it when a program gets to know the menu, and when the one that showed it has gone.
  void hostLoads() { session_.hostLoads(); }
  void hostVanished() { session_.close(); }

 private:
  void willOpen();
  void choose(const std::shared_ptr<const MenuItem>& item);

  RunLoop& runLoop_;
  std::weak_ptr<MenuDelegate> delegate_;
  std::vector<MenuItem> items_;
  QMenu menu_;
  MenuLines lines_;
  bool popsUpHere_ = false;
  MenuSession session_;  // last, so destroyed first: its end may use the rest
};

}  // namespace platform::linux::tray
