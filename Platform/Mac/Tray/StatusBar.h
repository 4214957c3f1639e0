// The status item in the menu bar.
//
// Threads: main thread only.
#pragma once

#include "Platform/StatusBar.h"

namespace platform::mac::tray {

class StatusBar final : public platform::StatusBar {
 public:
  std::shared_ptr<StatusItem> makeStatusItem(double length) override;
  std::shared_ptr<platform::Menu> makeMenu() override;
  std::shared_ptr<Image> systemSymbol(const std::string& name, const std::string& accessibilityDescription) override;
};

}  // namespace platform::mac::tray
