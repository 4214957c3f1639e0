// A launched application on a simulated desktop.
#pragma once

#include <memory>
#include <string>

#include "Quillfade/Application/AppDelegate.h"
#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {

inline constexpr const char* idleText = "Quillfade \xC2\xB7 idle";
inline constexpr const char* hiddenText = "Quillfade \xC2\xB7 annotations hidden";
inline constexpr std::uint32_t controlOptionCommandKeys = 6400;

class DelegateTest : public OnDesktop {
 protected:
  static constexpr platform::Rect region{{100, 100}, {800, 600}};

  // The delegate reads the settings when it is made, so tests store theirs first.
  void launch() {
    delegate = std::make_shared<AppDelegate>(desktop);
    delegate->applicationDidFinishLaunching();
    desktop.runLoop().settle();
  }

  void launchWithCoverOn(CoverStyle style = CoverStyle::live) {
    launch();
    overlay().setStyle(style);
    overlay().setRegion(region);
    overlay().setEnabled(true);
    desktop.runLoop().settle();
  }

  void launchWithoutPermission() {
    desktop.screenCaptureAccess().isGranted = false;
    launch();
  }

  void store(const std::string& key, platform::SettingValue value) {
    desktop.settings().values.insert_or_assign(key, value);
  }

  [[nodiscard]] OverlayController& overlay() const { return delegate->overlay(); }
  [[nodiscard]] std::shared_ptr<simulated::StatusItem> statusItem() const { return desktop.statusBar().items().back(); }
  [[nodiscard]] simulated::StatusButton& button() const { return *statusItem()->button(); }
  [[nodiscard]] simulated::Menu& menu() const { return *statusItem()->shownMenu(); }
  [[nodiscard]] const std::vector<platform::Alert>& alerts() const { return desktop.dialogs().alerts(); }

  std::shared_ptr<AppDelegate> delegate;
};

}  // namespace quillfade
