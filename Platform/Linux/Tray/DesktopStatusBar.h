// The status item in whatever tray the desktop has.
//
// The item exists from the moment it is made; it shows once there is a tray, and again when a tray comes back.
#pragma once

#include "Platform/Linux/Tray/HostMenus.h"
#include "Platform/Linux/Tray/TrayHosts.h"
#include "Platform/RunLoop.h"
#include "Platform/StatusBar.h"

namespace platform::linux::tray {

class DesktopStatusBar : public StatusBar {
 public:
  DesktopStatusBar(RunLoop& runLoop, HostMenus& hostMenus) : runLoop_(runLoop), hostMenus_(hostMenus) {}

  // The tray decides how wide its icons are, so the length is ignored.
  std::shared_ptr<StatusItem> makeStatusItem(double length) override;
  std::shared_ptr<Menu> makeMenu() override;
  std::shared_ptr<Image> systemSymbol(const std::string& name, const std::string& accessibilityDescription) override;

 private:
  RunLoop& runLoop_;
  HostMenus& hostMenus_;
  TrayHosts hosts_;
};

}  // namespace platform::linux::tray
