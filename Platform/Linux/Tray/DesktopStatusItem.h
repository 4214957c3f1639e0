// One tray icon with its tooltip and its menu. The accessibility description of its image is the title that hosts read.
//
// Threads: main thread only.
#pragma once

#include <QSystemTrayIcon>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Linux/Toolkit/PaletteWatch.h"
#include "Platform/Linux/Tray/DesktopMenu.h"
#include "Platform/Linux/Tray/SymbolImage.h"
#include "Platform/StatusBar.h"

namespace platform::linux::tray {

class DesktopStatusItem : public StatusItem, private StatusButton {
 public:
  DesktopStatusItem() = default;
  ~DesktopStatusItem() override;
  DesktopStatusItem(const DesktopStatusItem&) = delete;
  DesktopStatusItem& operator=(const DesktopStatusItem&) = delete;

  [[nodiscard]] StatusButton* button() override { return this; }
  void setMenu(std::shared_ptr<platform::Menu> menu) override;
  [[nodiscard]] std::shared_ptr<platform::Menu> menu() const override { return menu_; }

  // Call it once a tray is there, not earlier.
  void show();
  void hostCame();
  void hostVanished();
  [[nodiscard]] const QSystemTrayIcon* trayIcon() const { return icon_ ? &*icon_ : nullptr; }

 private:
  // Shows it on the session bus that has come back.
  void showAgain();
  void setImage(std::shared_ptr<Image> image) override;
  [[nodiscard]] std::shared_ptr<Image> image() const override { return image_; }
  void setToolTip(const std::string& text) override;
  void draw();

  // Declared before the icon, which refers to the menu.
  std::shared_ptr<DesktopMenu> menu_;
  std::shared_ptr<SymbolImage> image_;
  std::string toolTip_;
  std::optional<QSystemTrayIcon> icon_;
  toolkit::PaletteWatch palette_{[this] { draw(); }};
};

}  // namespace platform::linux::tray
