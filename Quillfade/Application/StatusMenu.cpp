// The face of the delegate: the icon that shows the state and the menu that offers every command.

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "Quillfade/Application/AppDelegate.h"
#include "Quillfade/Basics/Fatal.h"
#include "Quillfade/Basics/Identity.h"

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

// A key that has no letter of its own is not shown.
MenuItem withHotKey(MenuItem item, const KeyCombination& combination) {
  namespace keys = platform::hotkeymodifiers;
  namespace flags = platform::modifierflags;
  constexpr std::array<std::pair<std::uint32_t, std::uint32_t>, 3> masks{
      {{keys::control, flags::control}, {keys::option, flags::option}, {keys::command, flags::command}}};
  std::string name = keyName(combination);
  if (name.size() != 1) return item;
  if (name[0] >= 'A' && name[0] <= 'Z') name[0] = static_cast<char>(name[0] - 'A' + 'a');
  std::uint32_t mask = 0;
  for (const auto& [modifier, flag] : masks) mask |= (combination.modifiers & modifier) != 0 ? flag : 0;
  return withKey(std::move(item), name.c_str(), mask);
}

MenuItem withState(MenuItem item, bool on) {
  item.state = on ? ControlState::on : ControlState::off;
  return item;
}

std::string areaLabel(const std::optional<platform::Rect>& region, const platform::Texts& texts) {
  if (!region) return texts.translated("Area: whole screen");
  return texts.translated("Area: ") + std::to_string(wholeNumber(region->width())) + " × " +
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
  button->setToolTip(translated(hidden ? hiddenText : idleText));
}

// Without the area's size: one that cannot be shown ends the process, but not before somebody opens the menu.
void AppDelegate::menuWillBeListed(platform::Menu& menu) { fillMenu(menu, translated("Area: ") + "…"); }

void AppDelegate::menuWillOpen(platform::Menu& /*menu*/) {
  overlay_->setMenuOpen(true);
  rebuildMenu();
}

void AppDelegate::menuDidClose(platform::Menu& /*menu*/) { overlay_->setMenuOpen(false); }

MenuItem AppDelegate::commandItem(std::string_view title, Command command) {
  // The menu outlives nothing here, but its items are handed out: they hold the delegate weakly like all else.
  const auto weakDelegate = weak_from_this();
  return {.title = translated(title), .action = [weakDelegate, command = std::move(command)](const MenuItem&) {
            if (const auto delegate = weakDelegate.lock()) command(*delegate);
          }};
}

MenuItem AppDelegate::hotKeyItem(std::string_view title, HotKeyCommand command) {
  const auto key = std::ranges::find(hotKeyTable_, command, &HotKey::command);
  return withHotKey(commandItem(title, commandOf(command)), key->combination);
}

MenuItem AppDelegate::styleMenuItem() {
  MenuItem mode{.title = translated("Mode")};
  const auto weakDelegate = weak_from_this();
  for (const CoverStyle style : allCoverStyles) {
    MenuItem item{.title = translated(title(style)), .action = [weakDelegate](const MenuItem& chosen) {
                    if (const auto delegate = weakDelegate.lock()) delegate->chooseStyle(chosen);
                  }};
    item.tag = rawValue(style);
    mode.submenu.push_back(withState(std::move(item), style == overlay_->style()));
  }
  return mode;
}

void AppDelegate::rebuildMenu() {
  if (!statusItem_) fatalError("there is no status item whose menu could be built");
  if (const auto menu = statusItem_->menu()) fillMenu(*menu, areaLabel(overlay_->region(), platform_.texts()));
}

void AppDelegate::fillMenu(platform::Menu& menu, const std::string& areaLabel) {
  namespace flags = platform::modifierflags;

  const bool on = overlay_->isEnabled();
  const bool atLogin = platform_.loginItem().status() == platform::LoginItemStatus::enabled;

  auto hide = hotKeyItem("Hide Annotations", HotKeyCommand::toggle);
  auto peekItem = hotKeyItem("Peek for 5 Seconds", HotKeyCommand::peek);
  peekItem.isEnabled = on;

  menu.removeAllItems();
  menu.addItem(information(translated(on ? hiddenText : idleText)));
  menu.addItem(separator());
  menu.addItem(withState(std::move(hide), on));
  menu.addItem(std::move(peekItem));
  menu.addItem(separator());
  menu.addItem(hotKeyItem("Whole Screen", HotKeyCommand::wholeScreen));
  menu.addItem(hotKeyItem("Select Area…", HotKeyCommand::selectArea));
  menu.addItem(information(areaLabel));
  menu.addItem(separator());
  menu.addItem(styleMenuItem());
  menu.addItem(withState(commandItem("Show Outline", &AppDelegate::toggleOutline), overlay_->showsOutline()));
  menu.addItem(separator());
  menu.addItem(withState(commandItem("Launch at Login", &AppDelegate::toggleLaunchAtLogin), atLogin));
  menu.addItem(commandItem("About Quillfade", &AppDelegate::showAbout));
  menu.addItem(separator());
  menu.addItem(withKey(commandItem("Quit Quillfade", &AppDelegate::quit), "q", flags::command));
}

}  // namespace quillfade
