// The application's shell: the launch, the status item and its menu, and the commands that menu and hot keys share.
//
// Threads: main thread only.
// Lifetime: always held by a shared pointer; everything that is handed to others holds the delegate weakly.
#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Platform.h"
#include "Quillfade/Application/Alerts.h"
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

  void menuWillBeListed(platform::Menu& menu) override;
  void menuWillOpen(platform::Menu& menu) override;
  void menuDidClose(platform::Menu& menu) override;

  // The commands. Those that can show the live cover pass the permission gate first.
  Outcome toggleCover();
  void peek();
  Outcome wholeScreen();
  // Carried out once the selection is on the screen.
  Outcome selectArea();
  void chooseStyle(const platform::MenuItem& item);
  // From the command line only. Unlike the menu, it leads back from the solid cover to the live one, with permission.
  Outcome requestStyle(CoverStyle style);
  void toggleOutline();
  void toggleLaunchAtLogin();
  void showAbout();
  void quit();

  [[nodiscard]] const std::shared_ptr<platform::StatusItem>& statusItem() const { return statusItem_; }
  [[nodiscard]] OverlayController& overlay() const { return *overlay_; }
  [[nodiscard]] RegionSelector& selector() const { return *selector_; }
  [[nodiscard]] const std::shared_ptr<HotKeyManager>& hotKeys() const { return hotKeys_; }
  // As they are now, in the order in which they were bound.
  [[nodiscard]] std::vector<HotKeyState> hotKeyStates() const;

 private:
  using Command = std::function<void(AppDelegate&)>;

  [[nodiscard]] platform::Application& application() const;

  void createStatusItem();
  [[nodiscard]] static Command commandOf(HotKeyCommand name);
  void bindHotKeys();
  void startDemonstration();
  void welcome();

  [[nodiscard]] std::string translated(std::string_view english) const;
  void updateStatusButton();
  void rebuildMenu();
  void fillMenu(platform::Menu& menu, const std::string& areaLabel);
  [[nodiscard]] platform::MenuItem commandItem(std::string_view title, Command command);
  // With the key that the command has now.
  [[nodiscard]] platform::MenuItem hotKeyItem(std::string_view title, HotKeyCommand command);
  [[nodiscard]] platform::MenuItem styleMenuItem();

  enum class Permission { granted, solidPreferred };

  // A failure abandons the command.
  [[nodiscard]] Outcome ensureLivePermission();
  // Asks the desktop, and then the user.
  [[nodiscard]] std::expected<Permission, std::string> askForPermission();
  [[nodiscard]] Outcome switchCover(bool on);

  platform::Platform& platform_;
  std::shared_ptr<platform::StatusItem> statusItem_;
  std::shared_ptr<OverlayController> overlay_;
  std::shared_ptr<RegionSelector> selector_;
  Alerts alerts_;
  std::shared_ptr<HotKeyManager> hotKeys_;
  HotKeyTable hotKeyTable_ = builtInHotKeys;
  std::vector<std::optional<platform::HotKeyReference>> hotKeyReferences_;  // one for each that was bound
};

}  // namespace quillfade
