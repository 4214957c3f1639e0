// The application's face: the icon that shows the state, and the menu that offers every command.
//
// Threads: main thread only. Lifetime: the platform and the controller outlive it. Menu items are handed out; they hold
// the commands weakly.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Platform/Platform.h"
#include "Quillfade/Application/Commands.h"
#include "Quillfade/Cover/OverlayController.h"
#include "Quillfade/Keys/HotKeyTable.h"

namespace quillfade {

class StatusMenu {
 public:
  StatusMenu(platform::Platform& platform, const OverlayController& overlay, std::weak_ptr<Commands> commands)
      : platform_(platform), overlay_(overlay), commands_(std::move(commands)) {}

  // Once, before all else. The delegate hears when the menu opens and closes.
  void create(const std::weak_ptr<platform::MenuDelegate>& delegate);
  // The keys that the menu shows from its next rebuilding on.
  void setHotKeys(const HotKeyTable& hotKeys) { hotKeys_ = hotKeys; }

  void updateStatusButton();
  void rebuildMenu();
  // The lines for a desktop that lists them before the menu opens.
  void list(platform::Menu& menu);

  [[nodiscard]] const std::shared_ptr<platform::StatusItem>& statusItem() const { return statusItem_; }

 private:
  using Command = std::function<void(Commands&)>;

  void fillMenu(platform::Menu& menu, const std::string& areaLabel);
  [[nodiscard]] platform::MenuItem commandItem(std::string_view title, Command command);
  // With the key that the command has now.
  [[nodiscard]] platform::MenuItem hotKeyItem(HotKeyCommand command);
  [[nodiscard]] platform::MenuItem styleMenuItem();
  [[nodiscard]] std::string translated(std::string_view english) const;

  platform::Platform& platform_;
  const OverlayController& overlay_;
  std::weak_ptr<Commands> commands_;
  std::shared_ptr<platform::StatusItem> statusItem_;
  HotKeyTable hotKeys_ = builtInHotKeys;
};

}  // namespace quillfade
