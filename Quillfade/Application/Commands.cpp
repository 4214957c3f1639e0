#include "Quillfade/Application/Commands.h"

#include <string>
#include <utility>

#include "Quillfade/Application/LockedSession.h"
#include "Quillfade/Application/SharedApplication.h"
#include "Quillfade/Basics/Fatal.h"
#include "Quillfade/Basics/Identity.h"

namespace quillfade {
namespace {

constexpr double aboutFontSize = 11;

constexpr const char* solidWasChosen = "The live style has no permission; the solid cover has been chosen.";

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

Commands::Commands(platform::Platform& platform, std::shared_ptr<OverlayController> overlay,
                   std::shared_ptr<RegionSelector> selector)
    : platform_(platform),
      overlay_(std::move(overlay)),
      selector_(std::move(selector)),
      alerts_(platform),
      gate_(platform, *overlay_, alerts_) {}

void Commands::perform(HotKeyCommand command) {
  switch (command) {
    case HotKeyCommand::toggle:
      toggleCover();
      return;
    case HotKeyCommand::peek:
      return peek();
    case HotKeyCommand::selectArea:
      selectArea();
      return;
    case HotKeyCommand::wholeScreen:
      wholeScreen();
      return;
  }
  fatalError("there is no such hot key");
}

Outcome Commands::toggleCover() {
  if (const auto passed = gate_.ensureLivePermission(); !passed) return passed;
  return overlay_->region() ? switchCover(!overlay_->isEnabled()) : wholeScreen();
}

Outcome Commands::switchCover(bool on) {
  overlay_->setEnabled(on);
  if (on && !overlay_->isEnabled()) return std::unexpected("No screen shows enough of the area.");
  return {};
}

void Commands::peek() { overlay_->peek(OverlayController::defaultPeekLength); }

Outcome Commands::wholeScreen() {
  if (const auto passed = gate_.ensureLivePermission(); !passed) return passed;
  const auto screens = platform_.screens().all();
  if (screens.empty()) return std::unexpected("There is no screen.");
  platform::Rect whole = screens.front().frame;
  for (const auto& screen : screens) whole = platform::united(whole, screen.frame);
  overlay_->setRegion(whole);
  return switchCover(true);
}

Outcome Commands::selectArea() {
  if (const auto passed = gate_.ensureLivePermission(); !passed) return passed;
  // Before the cover is touched: without a selection, nothing would switch it on again.
  if (platform_.sessionLock().isLocked()) return std::unexpected(sessionIsLocked);
  const bool wasOn = overlay_->isEnabled();
  if (wasOn) overlay_->setEnabled(false);
  selector_->begin([weakOverlay = std::weak_ptr(overlay_), wasOn](std::optional<platform::Rect> rect) {
    const auto overlay = weakOverlay.lock();
    if (!overlay) return;
    if (rect) overlay->setRegion(*rect);
    if (rect || wasOn) overlay->setEnabled(true);
  });
  return {};
}

void Commands::chooseStyle(const platform::MenuItem& item) {
  const auto chosen = coverStyle(item.tag);
  if (!chosen) return;
  // Live is never switched on from solid here: the gate asks for the style in force, and so passes at once for the
  // solid one without a look at the permission. What was not asked about is not switched on; `requestStyle` asks first.
  if (*chosen == CoverStyle::live && (!gate_.ensureLivePermission() || overlay_->style() != CoverStyle::live)) return;
  overlay_->setStyle(*chosen);
}

Outcome Commands::requestStyle(CoverStyle style) {
  const auto permission = style == CoverStyle::live ? gate_.ask() : PermissionGate::Permission::granted;
  if (!permission) return std::unexpected(permission.error());
  overlay_->setStyle(*permission == PermissionGate::Permission::granted ? style : CoverStyle::solid);
  if (*permission == PermissionGate::Permission::solidPreferred) return std::unexpected(solidWasChosen);
  return {};
}

void Commands::toggleOutline() {
  overlay_->setShowsOutline(!overlay_->showsOutline());
  if (!overlay_->isEnabled()) return;
  overlay_->setEnabled(false);
  overlay_->setEnabled(true);
}

void Commands::toggleLaunchAtLogin() {
  auto& item = platform_.loginItem();
  const auto changed =
      item.status() == platform::LoginItemStatus::enabled ? item.unregisterItem() : item.registerItem();
  if (changed) return;
  alerts_.tell({.messageText = "Could not change login item",
                .informativeText = changed.error().localizedDescription,
                .buttons = {"OK"}});
}

void Commands::showAbout() {
  sharedApplication(platform_).activateIgnoringOtherApps();
  auto panel = aboutPanel();
  panel.credits = platform_.texts().translated(panel.credits);
  platform_.dialogs().orderFrontAboutPanel(panel);
}

void Commands::quit() { sharedApplication(platform_).terminate(); }

}  // namespace quillfade
