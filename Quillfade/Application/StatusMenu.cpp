#include "Quillfade/Application/StatusMenu.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "Platform/AsciiCase.h"
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

// A key without a letter of its own is not shown.
MenuItem withHotKey(MenuItem item, const KeyCombination& combination) {
  namespace keys = platform::hotkeymodifiers;
  namespace flags = platform::modifierflags;
  constexpr std::array<std::pair<std::uint32_t, std::uint32_t>, 3> masks{
      {{keys::control, flags::control}, {keys::option, flags::option}, {keys::command, flags::command}}};
  std::string name = keyName(combination);
  if (name.size() != 1) return item;
  name[0] = platform::asciiLowerCase(name[0]);
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

void StatusMenu::create(const std::weak_ptr<platform::MenuDelegate>& delegate) {
  auto& bar = platform_.statusBar();
  statusItem_ = bar.makeStatusItem(platform::StatusBar::squareLength);
  if (auto* button = statusItem_ ? statusItem_->button() : nullptr) {
    button->setImage(bar.systemSymbol("pencil", std::string{applicationName}));
    if (const auto image = button->image()) image->setTemplate(true);
    button->setToolTip(std::string{applicationName});
  }
  const auto menu = bar.makeMenu();
  menu->setDelegate(delegate);
  if (!statusItem_) fatalError("the status bar gave no status item");
  statusItem_->setMenu(menu);
}

void StatusMenu::updateStatusButton() {
  if (!statusItem_) fatalError("there is no status item to update");
  auto* button = statusItem_->button();
  if (button == nullptr) return;
  const bool hidden = overlay_.isEnabled();
  if (const auto image =
          platform_.statusBar().systemSymbol(hidden ? "pencil.slash" : "pencil", std::string{applicationName})) {
    image->setTemplate(true);
    button->setImage(image);
  }
  button->setToolTip(translated(hidden ? hiddenText : idleText));
}

// Without the area's size: one that cannot be shown ends the process, but not before somebody opens the menu.
void StatusMenu::list(platform::Menu& menu) { fillMenu(menu, translated("Area: ") + "…"); }

MenuItem StatusMenu::commandItem(std::string_view title, Command command) {
  return {.title = translated(title), .action = [commands = commands_, command = std::move(command)](const MenuItem&) {
            if (const auto held = commands.lock()) command(*held);
          }};
}

MenuItem StatusMenu::hotKeyItem(HotKeyCommand command) {
  const auto key = std::ranges::find(hotKeys_, command, &HotKey::command);
  return withHotKey(commandItem(key->title, [command](Commands& commands) { commands.perform(command); }),
                    key->combination);
}

MenuItem StatusMenu::styleMenuItem() {
  MenuItem mode{.title = translated("Mode")};
  for (const CoverStyle style : allCoverStyles) {
    MenuItem item{.title = translated(title(style)), .action = [commands = commands_](const MenuItem& chosen) {
                    if (const auto held = commands.lock()) held->chooseStyle(chosen);
                  }};
    item.tag = rawValue(style);
    mode.submenu.push_back(withState(std::move(item), style == overlay_.style()));
  }
  return mode;
}

void StatusMenu::rebuildMenu() {
  if (!statusItem_) fatalError("there is no status item whose menu could be built");
  if (const auto menu = statusItem_->menu()) fillMenu(*menu, areaLabel(overlay_.region(), platform_.texts()));
}

void StatusMenu::fillMenu(platform::Menu& menu, const std::string& areaLabel) {
  namespace flags = platform::modifierflags;

  const bool on = overlay_.isEnabled();
  const bool atLogin = platform_.loginItem().status() == platform::LoginItemStatus::enabled;

  auto hide = hotKeyItem(HotKeyCommand::toggle);
  auto peekItem = hotKeyItem(HotKeyCommand::peek);
  peekItem.isEnabled = on;

  menu.removeAllItems();
  menu.addItem(information(translated(on ? hiddenText : idleText)));
  menu.addItem(separator());
  menu.addItem(withState(std::move(hide), on));
  menu.addItem(std::move(peekItem));
  menu.addItem(separator());
  menu.addItem(hotKeyItem(HotKeyCommand::wholeScreen));
  menu.addItem(hotKeyItem(HotKeyCommand::selectArea));
  menu.addItem(information(areaLabel));
  menu.addItem(separator());
  menu.addItem(styleMenuItem());
  menu.addItem(withState(commandItem("Show Outline", &Commands::toggleOutline), overlay_.showsOutline()));
  menu.addItem(separator());
  menu.addItem(withState(commandItem("Launch at Login", &Commands::toggleLaunchAtLogin), atLogin));
  menu.addItem(commandItem("About Quillfade", &Commands::showAbout));
  menu.addItem(separator());
  menu.addItem(withKey(commandItem("Quit Quillfade", &Commands::quit), "q", flags::command));
}

std::string StatusMenu::translated(std::string_view english) const { return platform_.texts().translated(english); }

}  // namespace quillfade
