// The face of the delegate: the icon that shows the state and the menu that offers every command.

#include <string>
#include <utility>

#include "Quillfade/AppDelegate.h"
#include "Quillfade/Fatal.h"
#include "Quillfade/Identity.h"

namespace quillfade {
namespace {

using platform::ControlState;
using platform::MenuItem;

constexpr const char* idleText = "Quillfade · idle";
constexpr const char* hiddenText = "Quillfade · annotations hidden";

MenuItem separator() { return {.isSeparator = true}; }

MenuItem information(std::string title) { return {.title = std::move(title), .isEnabled = false}; }

MenuItem withKey(MenuItem item, const char* key, std::uint32_t mask) {
  item.keyEquivalent = key;
  item.keyEquivalentModifierMask = mask;
  return item;
}

MenuItem withState(MenuItem item, bool on) {
  item.state = on ? ControlState::on : ControlState::off;
  return item;
}

std::string areaLabel(const std::optional<platform::Rect>& region) {
  if (!region) return "Area: whole screen";
  return "Area: " + std::to_string(wholeNumber(region->width())) + " × " +
         std::to_string(wholeNumber(region->height()));
}

}  // namespace

void AppDelegate::updateStatusButton() {
  if (!statusItem_) fatalError("there is no status item to update");
  auto* button = statusItem_->button();
  if (button == nullptr) return;
  const bool hidden = overlay_->isEnabled();
  if (const auto image =
          platform_.statusBar().systemSymbol(hidden ? "pencil.slash" : "pencil", std::string{applicationName})) {
    image->setTemplate(true);
    button->setImage(image);
  }
  button->setToolTip(hidden ? hiddenText : idleText);
}

void AppDelegate::menuWillOpen(platform::Menu& /*menu*/) {
  overlay_->setMenuOpen(true);
  rebuildMenu();
}

void AppDelegate::menuDidClose(platform::Menu& /*menu*/) { overlay_->setMenuOpen(false); }

MenuItem AppDelegate::commandItem(std::string title, Command command) {
  // The menu outlives nothing here, but its items are handed out: they hold the delegate weakly like all else.
  const auto weakDelegate = weak_from_this();
  return {.title = std::move(title), .action = [weakDelegate, command](const MenuItem&) {
            if (const auto delegate = weakDelegate.lock()) ((*delegate).*command)();
          }};
}

MenuItem AppDelegate::styleMenuItem() {
  MenuItem mode{.title = "Mode"};
  const auto weakDelegate = weak_from_this();
  for (const CoverStyle style : allCoverStyles) {
    MenuItem item{.title = std::string{title(style)}, .action = [weakDelegate](const MenuItem& chosen) {
                    if (const auto delegate = weakDelegate.lock()) delegate->chooseStyle(chosen);
                  }};
    item.tag = rawValue(style);
    mode.submenu.push_back(withState(std::move(item), style == overlay_->style()));
  }
  return mode;
}

void AppDelegate::rebuildMenu() {
  namespace flags = platform::modifierflags;
  constexpr std::uint32_t controlOptionCommand = flags::control | flags::option | flags::command;

  if (!statusItem_) fatalError("there is no status item whose menu could be built");
  const auto menu = statusItem_->menu();
  if (!menu) return;
  const bool on = overlay_->isEnabled();
  const bool atLogin = platform_.loginItem().status() == platform::LoginItemStatus::enabled;

  auto hide = withKey(commandItem("Hide Annotations", &AppDelegate::toggleCover), "d", controlOptionCommand);
  auto peekItem = withKey(commandItem("Peek for 5 Seconds", &AppDelegate::peek), "p", controlOptionCommand);
  peekItem.isEnabled = on;

  menu->removeAllItems();
  menu->addItem(information(on ? hiddenText : idleText));
  menu->addItem(separator());
  menu->addItem(withState(std::move(hide), on));
  menu->addItem(std::move(peekItem));
  menu->addItem(separator());
  menu->addItem(withKey(commandItem("Whole Screen", &AppDelegate::wholeScreen), "f", controlOptionCommand));
  menu->addItem(withKey(commandItem("Select Area…", &AppDelegate::selectArea), "a", controlOptionCommand));
  menu->addItem(information(areaLabel(overlay_->region())));
  menu->addItem(separator());
  menu->addItem(styleMenuItem());
  menu->addItem(withState(commandItem("Show Outline", &AppDelegate::toggleOutline), overlay_->showsOutline()));
  menu->addItem(separator());
  menu->addItem(withState(commandItem("Launch at Login", &AppDelegate::toggleLaunchAtLogin), atLogin));
  menu->addItem(commandItem("About Quillfade", &AppDelegate::showAbout));
  menu->addItem(separator());
  menu->addItem(withKey(commandItem("Quit Quillfade", &AppDelegate::quit), "q", flags::command));
}

}  // namespace quillfade
