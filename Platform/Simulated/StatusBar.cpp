#include "Platform/Simulated/StatusBar.h"

#include <utility>

namespace platform::simulated {

void Image::setTemplate(bool isTemplate) {
  record_.call("image " + name_ + (isTemplate ? ": template" : ": no template"));
  isTemplate_ = isTemplate;
}

void StatusButton::setImage(std::shared_ptr<platform::Image> image) {
  auto own = std::dynamic_pointer_cast<Image>(image);
  if (image && !own) misuse("StatusButton::setImage was given an image of another desktop");
  record_.call("status button: image " + (own ? own->name() : "none"));
  image_ = std::move(own);
}

std::shared_ptr<platform::Image> StatusButton::image() const {
  record_.expectMainThread("StatusButton::image");
  return image_;
}

void StatusButton::setToolTip(const std::string& text) {
  record_.call("status button: tooltip " + text);
  toolTip_ = text;
}

StatusItem::StatusItem(Record& record, double length, bool hasButton) : record_(record), length_(length) {
  if (hasButton) button_.emplace(record);
}

StatusItem::~StatusItem() { record_.call("status item: release"); }

StatusButton* StatusItem::button() {
  record_.expectMainThread("StatusItem::button");
  return button_ ? &*button_ : nullptr;
}

void StatusItem::setMenu(std::shared_ptr<platform::Menu> menu) {
  record_.call("status item: set menu");
  menu_ = std::dynamic_pointer_cast<Menu>(menu);
  if (menu && !menu_) misuse("StatusItem::setMenu was given a menu of another desktop");
}

std::shared_ptr<platform::Menu> StatusItem::menu() const {
  record_.expectMainThread("StatusItem::menu");
  return menu_;
}

std::shared_ptr<platform::StatusItem> StatusBar::makeStatusItem(double length) {
  record_.call("status bar: make item");
  if (refusesItems) return nullptr;
  auto item = std::make_shared<StatusItem>(record_, length, !refusesButtons);
  items_.push_back(item);
  return item;
}

std::shared_ptr<platform::Menu> StatusBar::makeMenu() {
  record_.call("status bar: make menu");
  return std::make_shared<Menu>(record_, runLoop_);
}

std::shared_ptr<platform::Image> StatusBar::systemSymbol(const std::string& name,
                                                         const std::string& accessibilityDescription) {
  record_.call("status bar: symbol " + name);
  if (missingSymbols.contains(name)) return nullptr;
  return std::make_shared<Image>(record_, name, accessibilityDescription);
}

std::vector<std::shared_ptr<StatusItem>> StatusBar::items() const {
  std::vector<std::shared_ptr<StatusItem>> live;
  for (const auto& each : items_) {
    if (auto item = each.lock()) live.push_back(std::move(item));
  }
  return live;
}

}  // namespace platform::simulated
