// The delegate's commands and the permission gate in front of them.

#include <string>

#include "Quillfade/AppDelegate.h"
#include "Quillfade/Identity.h"

namespace quillfade {
namespace {

constexpr double aboutFontSize = 11;

platform::Alert translated(platform::Alert alert, const platform::Texts& texts) {
  for (auto* text : {&alert.messageText, &alert.informativeText}) *text = texts.translated(*text);
  for (auto& button : alert.buttons) button = texts.translated(button);
  return alert;
}

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

bool AppDelegate::ensureLivePermission() {
  if (overlay_->style() != CoverStyle::live) return true;
  const Permission permission = askForPermission();
  if (permission == Permission::solidPreferred) overlay_->setStyle(CoverStyle::solid);
  return permission != Permission::settingsOpened;
}

AppDelegate::Permission AppDelegate::askForPermission() {
  auto& access = platform_.screenCaptureAccess();
  if (access.preflight()) return Permission::granted;
  (void)access.request();
  if (access.preflight()) return Permission::granted;
  application().activateIgnoringOtherApps();
  if (platform_.dialogs().runModal(quillfade::translated(permissionAlert(), platform_.texts())) !=
      platform::alertFirstButtonReturn) {
    return Permission::solidPreferred;
  }
  platform_.workspace().openURL(privacySettingsLink());
  return Permission::settingsOpened;
}

void AppDelegate::toggleCover() {
  if (!ensureLivePermission()) return;
  if (!overlay_->region()) {
    wholeScreen();
  } else {
    overlay_->setEnabled(!overlay_->isEnabled());
  }
}

void AppDelegate::peek() { overlay_->peek(OverlayController::defaultPeekLength); }

void AppDelegate::wholeScreen() {
  if (!ensureLivePermission()) return;
  const auto screens = platform_.screens().all();
  if (screens.empty()) return;
  platform::Rect whole = screens.front().frame;
  for (const auto& screen : screens) whole = platform::united(whole, screen.frame);
  overlay_->setRegion(whole);
  overlay_->setEnabled(true);
}

void AppDelegate::selectArea() {
  if (!ensureLivePermission()) return;
  const bool wasOn = overlay_->isEnabled();
  if (wasOn) overlay_->setEnabled(false);
  selector_->begin([weakDelegate = weak_from_this(), wasOn](std::optional<platform::Rect> rect) {
    const auto delegate = weakDelegate.lock();
    if (!delegate) return;
    if (rect) delegate->overlay_->setRegion(*rect);
    if (rect || wasOn) delegate->overlay_->setEnabled(true);
  });
}

void AppDelegate::chooseStyle(const platform::MenuItem& item) {
  const auto chosen = coverStyle(item.tag);
  if (!chosen) return;
  // Live is never switched on from solid here: the gate passes at once for the solid style, and then nothing changes.
  // That is intended.
  if (*chosen == CoverStyle::live && (!ensureLivePermission() || overlay_->style() != CoverStyle::live)) return;
  overlay_->setStyle(*chosen);
}

void AppDelegate::setStyle(CoverStyle style) {
  const Permission permission = style == CoverStyle::live ? askForPermission() : Permission::granted;
  if (permission == Permission::settingsOpened) return;
  overlay_->setStyle(permission == Permission::granted ? style : CoverStyle::solid);
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
  application().activateIgnoringOtherApps();
  platform_.dialogs().runModal(quillfade::translated({.messageText = "Could not change login item",
                                                      .informativeText = changed.error().localizedDescription,
                                                      .buttons = {"OK"}},
                                                     platform_.texts()));
}

void AppDelegate::showAbout() {
  application().activateIgnoringOtherApps();
  auto panel = aboutPanel();
  panel.credits = translated(panel.credits);
  platform_.dialogs().orderFrontAboutPanel(panel);
}

void AppDelegate::quit() { application().terminate(); }

}  // namespace quillfade
