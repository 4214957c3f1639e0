// The application's shell: the launch, and the wires between the status menu, the commands, the hot keys and the cover.
//
// Threads: main thread only.
// Lifetime: always held by a shared pointer; whatever is handed to others holds the delegate weakly.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Platform/Platform.h"
#include "Quillfade/Application/Commands.h"
#include "Quillfade/Application/StatusMenu.h"
#include "Quillfade/Basics/Outcome.h"
#include "Quillfade/Cover/OverlayController.h"
#include "Quillfade/Keys/HotKeyManager.h"
#include "Quillfade/Keys/HotKeyReport.h"
#include "Quillfade/Keys/HotKeyTable.h"
#include "Quillfade/Selection/RegionSelector.h"

namespace quillfade {

class AppDelegate final : public platform::ApplicationDelegate,
                          public platform::MenuDelegate,
                          public std::enable_shared_from_this<AppDelegate> {
 public:
  explicit AppDelegate(platform::Platform& platform);

  void applicationDidFinishLaunching() override;
  void screensChanged();
  void sessionLockChanged();

  void menuWillBeListed(platform::Menu& menu) override { statusMenu_.list(menu); }
  void menuWillOpen(platform::Menu& menu) override;
  void menuDidClose(platform::Menu& menu) override;

  // See StatusMenu.
  void updateStatusButton() { statusMenu_.updateStatusButton(); }
  void rebuildMenu() { statusMenu_.rebuildMenu(); }
  [[nodiscard]] const std::shared_ptr<platform::StatusItem>& statusItem() const { return statusMenu_.statusItem(); }

  // See Commands.
  [[nodiscard]] Outcome ensureLivePermission() { return commands_->gate().ensureLivePermission(); }
  Outcome toggleCover() { return commands_->toggleCover(); }
  void peek() { commands_->peek(); }
  Outcome wholeScreen() { return commands_->wholeScreen(); }
  Outcome selectArea() { return commands_->selectArea(); }
  void chooseStyle(const platform::MenuItem& item) { commands_->chooseStyle(item); }
  Outcome requestStyle(CoverStyle style) { return commands_->requestStyle(style); }
  void toggleOutline() { commands_->toggleOutline(); }
  void toggleLaunchAtLogin() { commands_->toggleLaunchAtLogin(); }
  void showAbout() { commands_->showAbout(); }
  void quit() { commands_->quit(); }

  [[nodiscard]] OverlayController& overlay() const { return *overlay_; }
  [[nodiscard]] RegionSelector& selector() const { return *selector_; }
  [[nodiscard]] const std::shared_ptr<HotKeyManager>& hotKeys() const { return hotKeys_; }
  // As they are now, in the order they were bound.
  [[nodiscard]] std::vector<HotKeyState> hotKeyStates() const;

 private:
  void bindHotKeys();
  void startDemonstration();
  void welcome();

  platform::Platform& platform_;
  std::shared_ptr<OverlayController> overlay_;
  std::shared_ptr<RegionSelector> selector_;
  std::shared_ptr<Commands> commands_;
  StatusMenu statusMenu_;
  std::shared_ptr<HotKeyManager> hotKeys_;
  HotKeyTable hotKeyTable_ = builtInHotKeys;
  std::vector<std::optional<platform::HotKeyReference>> hotKeyReferences_;  // one per binding; absent if it was refused
};

}  // namespace quillfade
