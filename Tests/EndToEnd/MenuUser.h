// A tray's host on the session bus, and a user of the menu that it shows.
//
// Threads: one at a time. Every call returns when it is answered, or throws.
#pragma once

#include <string>
#include <vector>

#include "Tests/Linux/Tray/TrayHost.h"

namespace endtoend {

class MenuUser {
 public:
  // Waits until the program's item is in the tray.
  MenuUser();

  // Opens the menu and returns its lines as the host gets them; "" for a separator.
  std::vector<qt::ShownItem> open();
  [[nodiscard]] std::vector<qt::ShownItem> lines() { return host_.items(); }
  void close() { host_.event(0, QStringLiteral("closed")); }
  // Opens the menu and chooses the line with this title, submenus included.
  void choose(const std::string& title);
  // The title of the item's tooltip.
  [[nodiscard]] std::string toolTip();

 private:
  qt::TrayHost host_;
};

[[nodiscard]] const qt::ShownItem* findLine(const std::vector<qt::ShownItem>& lines, const std::string& title);

}  // namespace endtoend
