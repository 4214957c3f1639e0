// A status bar and its menus, which only tests open.
//
// Threads: main thread only.
// Ownership: as in the port; the bar remembers its items weakly.
#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Platform/Simulated/Record.h"
#include "Platform/Simulated/RunLoop.h"
#include "Platform/StatusBar.h"

namespace platform::simulated {

class Image final : public platform::Image {
 public:
  Image(Record& record, std::string name, std::string description)
      : record_(record), name_(std::move(name)), description_(std::move(description)) {}
  void setTemplate(bool isTemplate) override;

  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] const std::string& description() const { return description_; }
  [[nodiscard]] bool isTemplate() const { return isTemplate_; }

 private:
  Record& record_;
  const std::string name_;
  const std::string description_;
  bool isTemplate_ = false;
};

class StatusButton final : public platform::StatusButton {
 public:
  explicit StatusButton(Record& record) : record_(record) {}

  void setImage(std::shared_ptr<platform::Image> image) override;
  [[nodiscard]] std::shared_ptr<platform::Image> image() const override;
  void setToolTip(const std::string& text) override;

  [[nodiscard]] std::shared_ptr<Image> shownImage() const { return image_; }
  [[nodiscard]] const std::string& toolTip() const { return toolTip_; }

 private:
  Record& record_;
  std::shared_ptr<Image> image_;
  std::string toolTip_;
};

class Menu final : public platform::Menu {
 public:
  Menu(Record& record, RunLoop& runLoop) : record_(record), runLoop_(runLoop) {}

  void setDelegate(std::weak_ptr<MenuDelegate> delegate) override;
  void removeAllItems() override;
  void addItem(MenuItem item) override;

  void open();
  void close();
  // Opens the menu, closes it and runs the item's action, as a user's choice does; false when there is no such item or
  // it cannot be chosen. Searches submenus, too.
  bool choose(const std::string& title);

  [[nodiscard]] const std::vector<MenuItem>& items() const { return items_; }
  // The first item with this title, submenus included; null when there is none.
  [[nodiscard]] const MenuItem* item(const std::string& title) const;
  [[nodiscard]] std::shared_ptr<MenuDelegate> delegate() const { return delegate_.lock(); }
  [[nodiscard]] bool isOpen() const { return isOpen_; }
  // An item can be chosen when it has an action, whatever its flag says, or leads to a submenu.
  [[nodiscard]] static bool isEnabled(const MenuItem& item);

 private:
  Record& record_;
  RunLoop& runLoop_;
  std::weak_ptr<MenuDelegate> delegate_;
  std::vector<MenuItem> items_;
  bool isOpen_ = false;
};

class StatusItem final : public platform::StatusItem {
 public:
  StatusItem(Record& record, double length, bool hasButton);
  ~StatusItem() override;
  StatusItem(const StatusItem&) = delete;
  StatusItem& operator=(const StatusItem&) = delete;

  [[nodiscard]] StatusButton* button() override;
  void setMenu(std::shared_ptr<platform::Menu> menu) override;
  [[nodiscard]] std::shared_ptr<platform::Menu> menu() const override;

  [[nodiscard]] double length() const { return length_; }
  [[nodiscard]] std::shared_ptr<Menu> shownMenu() const { return menu_; }

 private:
  Record& record_;
  const double length_;
  std::optional<StatusButton> button_;
  std::shared_ptr<Menu> menu_;
};

class StatusBar final : public platform::StatusBar {
 public:
  StatusBar(Record& record, RunLoop& runLoop) : record_(record), runLoop_(runLoop) {}

  std::shared_ptr<platform::StatusItem> makeStatusItem(double length) override;
  std::shared_ptr<platform::Menu> makeMenu() override;
  std::shared_ptr<platform::Image> systemSymbol(const std::string& name,
                                                const std::string& accessibilityDescription) override;

  bool refusesItems = false;
  bool refusesButtons = false;
  std::set<std::string> missingSymbols;

  // The items now in the bar, in the order they were made.
  [[nodiscard]] std::vector<std::shared_ptr<StatusItem>> items() const;

 private:
  Record& record_;
  RunLoop& runLoop_;
  std::vector<std::weak_ptr<StatusItem>> items_;
};

}  // namespace platform::simulated
