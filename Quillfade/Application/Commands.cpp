// The delegate's commands and the permission gate in front of them.

#include <string>

#include "Quillfade/Application/AppDelegate.h"
#include "Quillfade/Basics/Identity.h"

namespace quillfade {
namespace {

constexpr double aboutFontSize = 11;

constexpr const char* sessionIsLocked = "The session is locked.";
constexpr const char* questionWaits = "A question of Quillfade's waits on the screen: answer it first.";
constexpr const char* settingsWereOpened = "The live style lacks permission; the system settings were opened.";
constexpr const char* solidWasChosen = "The live style lacks permission; the solid cover was chosen.";

platform::Alert permissionAlert() {
  return {
      .messageText = "Screen Recording permission needed",
      .informativeText =
          "Quillfade shows a live view of your screen with annotation layers filtered out. That needs Screen Recording "
          "permission.\n\n"
          "Allow Quillfade in System Settings → Privacy & Security → Screen Recording, then relaunch it. Your screen "
          "share itself is unaffected.\n\n"
          "Or use the solid cover, which needs no permission.",
      .buttons = {"Open System Settings", "Use Solid Cover"},
  };
}

std::string privacySettingsLink() {
  const std::string scheme = "x-apple.systempreferences";
  const std::string pane = "com.apple.preference.security";
  const std::string anchor = "Privacy_ScreenCapture";
  return scheme + ':' + pane + '?' + anchor;
}

platform::AboutPanel aboutPanel() {
  return {
      .applicationName = std::string{applicationName},
      .applicationVersion = std::string{applicationVersion},
      .version = std::string{applicationVersion},
      .credits =
          "A live view of your screen (whole screen or one area) with annotation and drawing overlays filtered out. "
          "Nothing is frozen: the picture keeps updating, and your screen share keeps running. The mirror window is "
          "marked not to be captured.\n\n"
          "Needs Screen Recording permission. A solid cover is available as a fallback.\n\n"
          "Menu bar: pencil = idle, crossed pencil = annotations hidden.",
      .creditsFontSize = aboutFontSize,
      .creditsColor = platform::colors::secondaryLabel,
  };
}

}  // namespace

Outcome AppDelegate::ensureLivePermission() {
  if (overlay_->style() != CoverStyle::live) return {};
  const auto permission = askForPermission();
  if (!permission) return std::unexpected(permission.error());
  if (*permission == Permission::solidPreferred) overlay_->setStyle(CoverStyle::solid);
  return {};
}

std::expected<AppDelegate::Permission, std::string> AppDelegate::askForPermission() {
  auto& access = platform_.screenCaptureAccess();
  if (access.preflight()) return Permission::granted;
  // Nobody is there to answer, and nothing of ours belongs on a screen that is locked.
  if (platform_.sessionLock().isLocked()) return std::unexpected(sessionIsLocked);
  (void)access.request();
  if (access.preflight()) return Permission::granted;
  const auto answer = alerts_.ask(permissionAlert());
  if (!answer) return std::unexpected(questionWaits);
  if (*answer != platform::alertFirstButtonReturn) return Permission::solidPreferred;
  platform_.workspace().openURL(privacySettingsLink());
  return std::unexpected(settingsWereOpened);
}

Outcome AppDelegate::toggleCover() {
  if (const auto passed = ensureLivePermission(); !passed) return passed;
  return overlay_->region() ? switchCover(!overlay_->isEnabled()) : wholeScreen();
}

Outcome AppDelegate::switchCover(bool on) {
  overlay_->setEnabled(on);
  if (on && !overlay_->isEnabled()) return std::unexpected("No screen shows enough of the area.");
  return {};
}

void AppDelegate::peek() { overlay_->peek(OverlayController::defaultPeekLength); }

Outcome AppDelegate::wholeScreen() {
  if (const auto passed = ensureLivePermission(); !passed) return passed;
  const auto screens = platform_.screens().all();
  if (screens.empty()) return std::unexpected("There is no screen.");
  platform::Rect whole = screens.front().frame;
  for (const auto& screen : screens) whole = platform::united(whole, screen.frame);
  overlay_->setRegion(whole);
  return switchCover(true);
}

Outcome AppDelegate::selectArea() {
  if (const auto passed = ensureLivePermission(); !passed) return passed;
  // Before the cover is touched: without a selection, nothing would switch it on again.
  if (platform_.sessionLock().isLocked()) return std::unexpected(sessionIsLocked);
  const bool wasOn = overlay_->isEnabled();
  if (wasOn) overlay_->setEnabled(false);
  selector_->begin([weakDelegate = weak_from_this(), wasOn](std::optional<platform::Rect> rect) {
    const auto delegate = weakDelegate.lock();
    if (!delegate) return;
    if (rect) delegate->overlay_->setRegion(*rect);
    if (rect || wasOn) delegate->overlay_->setEnabled(true);
  });
  return {};
}

void AppDelegate::chooseStyle(const platform::MenuItem& item) {
  const auto chosen = coverStyle(item.tag);
  if (!chosen) return;
  // Live is never switched on from solid here: the gate asks for the style in force, and so passes at once for the
  // solid one without a look at the permission. What was not asked about is not switched on; `requestStyle` asks first.
  if (*chosen == CoverStyle::live && (!ensureLivePermission() || overlay_->style() != CoverStyle::live)) return;
  overlay_->setStyle(*chosen);
}

Outcome AppDelegate::requestStyle(CoverStyle style) {
  const auto permission = style == CoverStyle::live ? askForPermission() : Permission::granted;
  if (!permission) return std::unexpected(permission.error());
  overlay_->setStyle(*permission == Permission::granted ? style : CoverStyle::solid);
  if (*permission == Permission::solidPreferred) return std::unexpected(solidWasChosen);
  return {};
}

void AppDelegate::toggleOutline() {
  overlay_->setShowsOutline(!overlay_->showsOutline());
  if (!overlay_->isEnabled()) return;
  overlay_->setEnabled(false);
  overlay_->setEnabled(true);
}

void AppDelegate::toggleLaunchAtLogin() {
  auto& item = platform_.loginItem();
  const auto changed =
      item.status() == platform::LoginItemStatus::enabled ? item.unregisterItem() : item.registerItem();
  if (changed) return;
  alerts_.tell({.messageText = "Could not change login item",
                .informativeText = changed.error().localizedDescription,
                .buttons = {"OK"}});
}

void AppDelegate::showAbout() {
  application().activateIgnoringOtherApps();
  auto panel = aboutPanel();
  panel.credits = translated(panel.credits);
  platform_.dialogs().orderFrontAboutPanel(panel);
}

void AppDelegate::quit() { application().terminate(); }

}  // namespace quillfade
