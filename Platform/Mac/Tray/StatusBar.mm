#include "Platform/Mac/Tray/StatusBar.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "Platform/Mac/Foundation/Bridge.h"
#include "Platform/Mac/Tray/Menu.h"

namespace platform::mac::tray {
namespace {

class SymbolImage final : public Image {
 public:
  explicit SymbolImage(NSImage* image) : image_(image) {}
  void setTemplate(bool isTemplate) override { [image_ setTemplate:isTemplate]; }
  [[nodiscard]] NSImage* image() const { return image_; }

 private:
  NSImage* image_;
};

class BarButton final : public StatusButton {
 public:
  explicit BarButton(NSStatusBarButton* button) : button_(button) {}

  // Every image of this desktop comes from `systemSymbol`.
  void setImage(std::shared_ptr<Image> image) override {
    button_.image = image ? static_cast<const SymbolImage&>(*image).image() : nil;
  }
  [[nodiscard]] std::shared_ptr<Image> image() const override {
    NSImage* image = button_.image;
    return image != nil ? std::make_shared<SymbolImage>(image) : nullptr;
  }
  void setToolTip(const std::string& text) override { button_.toolTip = foundation::nsString(text); }

 private:
  NSStatusBarButton* button_;
};

class BarItem final : public StatusItem {
 public:
  explicit BarItem(NSStatusItem* item) : item_(item) {
    if (NSStatusBarButton* button = item.button) button_ = std::make_unique<BarButton>(button);
  }
  ~BarItem() override { [[NSStatusBar systemStatusBar] removeStatusItem:item_]; }
  BarItem(const BarItem&) = delete;
  BarItem& operator=(const BarItem&) = delete;

  [[nodiscard]] StatusButton* button() override { return button_.get(); }
  // Every menu of this desktop comes from `makeMenu`.
  void setMenu(std::shared_ptr<platform::Menu> menu) override {
    menu_ = std::static_pointer_cast<Menu>(std::move(menu));
    [item_ setMenu:menu_ ? menu_->menu() : nil];
  }
  [[nodiscard]] std::shared_ptr<platform::Menu> menu() const override { return menu_; }

 private:
  NSStatusItem* item_;
  std::unique_ptr<BarButton> button_;
  std::shared_ptr<Menu> menu_;
};

}  // namespace

std::shared_ptr<StatusItem> StatusBar::makeStatusItem(double length) {
  NSStatusItem* item = [[NSStatusBar systemStatusBar] statusItemWithLength:length];
  return std::make_shared<BarItem>(item);
}

std::shared_ptr<platform::Menu> StatusBar::makeMenu() { return Menu::make(); }

std::shared_ptr<Image> StatusBar::systemSymbol(const std::string& name, const std::string& accessibilityDescription) {
  NSImage* image = [NSImage imageWithSystemSymbolName:foundation::nsString(name)
                             accessibilityDescription:foundation::nsString(accessibilityDescription)];
  return image != nil ? std::make_shared<SymbolImage>(image) : nullptr;
}

}  // namespace platform::mac::tray
