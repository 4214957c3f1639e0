#include "Quillfade/Application/PermissionGate.h"

#include "Quillfade/Application/LockedSession.h"

namespace quillfade {
namespace {

constexpr const char* questionWaits = "Quillfade is waiting for an answer on the screen: answer that first.";
constexpr const char* settingsWereOpened = "The live style has no permission; the system settings have been opened.";

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

}  // namespace

Outcome PermissionGate::ensureLivePermission() {
  if (overlay_.style() != CoverStyle::live) return {};
  const auto permission = ask();
  if (!permission) return std::unexpected(permission.error());
  if (*permission == Permission::solidPreferred) overlay_.setStyle(CoverStyle::solid);
  return {};
}

std::expected<PermissionGate::Permission, std::string> PermissionGate::ask() {
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

}  // namespace quillfade
