#include "Platform/Linux/Tray/DesktopStatusBar.h"

#include "Platform/Linux/Tray/DesktopMenu.h"
#include "Platform/Linux/Tray/DesktopStatusItem.h"
#include "Platform/Linux/Tray/SymbolImage.h"

namespace platform::linux::tray {

std::shared_ptr<StatusItem> DesktopStatusBar::makeStatusItem(double /*length*/) {
  auto item = std::make_shared<DesktopStatusItem>();
  hosts_.whenAvailable([weak = std::weak_ptr(item)] {
    if (const auto living = weak.lock()) living->show();
  });
  hosts_.whenHostComes([weak = std::weak_ptr(item)] {
    if (const auto living = weak.lock()) living->hostCame();
  });
  hosts_.whenHostVanishes([weak = std::weak_ptr(item)] {
    if (const auto living = weak.lock()) living->hostVanished();
  });
  return item;
}

std::shared_ptr<Menu> DesktopStatusBar::makeMenu() { return std::make_shared<DesktopMenu>(runLoop_, hostMenus_); }

std::shared_ptr<Image> DesktopStatusBar::systemSymbol(const std::string& name,
                                                      const std::string& accessibilityDescription) {
  return SymbolImage::named(name, accessibilityDescription);
}

}  // namespace platform::linux::tray
