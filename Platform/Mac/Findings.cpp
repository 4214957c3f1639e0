#include "Platform/Mac/Findings.h"

#include <unistd.h>

#include <filesystem>

namespace platform::mac {

Finding permissionFinding(const std::optional<bool>& mayCapture) {
  Finding finding{.subject = "Screen Recording"};
  if (!mayCapture) {
    finding.health = Health::unseen;
    finding.detail = "only a running Quillfade knows of its permission, and none runs";
    finding.fix = "Start it, and run this again.";
  } else if (*mayCapture) {
    finding.detail = "the running Quillfade is allowed to";
  } else {
    finding.health = Health::fails;
    finding.detail = "the running Quillfade is not allowed to, so there is only the solid cover";
    finding.fix =
        "Allow it in System Settings → Privacy & Security → Screen Recording, then relaunch it. If it is switched on "
        "there already, it is so for an earlier build: take it off the list first.";
  }
  return finding;
}

Finding loginItemFinding(LoginItemStatus status) {
  Finding finding{.subject = "Launch at Login"};
  switch (status) {
    case LoginItemStatus::enabled:
      finding.detail = "on";
      break;
    case LoginItemStatus::notRegistered:
      finding.detail = "off";
      break;
    case LoginItemStatus::requiresApproval:
      finding.health = Health::limited;
      finding.detail = "waits for your approval";
      finding.fix = "Give it in System Settings → General → Login Items.";
      break;
    case LoginItemStatus::notFound:
      finding.health = Health::limited;
      finding.detail = "off, and the system knows of no application to start";
      finding.fix = "Move Quillfade.app into Applications before you switch it on.";
      break;
  }
  return finding;
}

Finding logFinding(const std::string& path) {
  const std::filesystem::path directory = std::filesystem::path{path}.parent_path();
  std::error_code error;
  const bool isWritable =
      std::filesystem::is_directory(directory, error) && access(directory.c_str(), W_OK | X_OK) == 0;
  if (isWritable) return {.subject = "Log", .detail = path};
  return {.subject = "Log",
          .health = Health::limited,
          .detail = "nothing is logged, since " + directory.string() + " is no directory that can be written to",
          .fix = "mkdir -p " + directory.string()};
}

std::string preferencesPath(const std::string& homeDirectory) {
  return homeDirectory + "/Library/Preferences/org.quillfade.Quillfade.plist";
}

}  // namespace platform::mac
