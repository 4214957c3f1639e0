#include "Platform/Linux/Lens/LauncherEntry.h"

#include <algorithm>

#include "Platform/Linux/Posix/DesktopEntry.h"

namespace platform::linux::lens {

namespace {

constexpr std::string_view mark = "X-Quillfade-Share=true";
constexpr std::string_view suffix = " (through Quillfade)";

// The key without its language: "Name" of "Name[de]=Karte".
std::string_view keyOf(std::string_view line) {
  const std::string_view key = line.substr(0, line.find('='));
  const std::string_view plain = key.substr(0, key.find('['));
  return plain.substr(0, plain.find_last_not_of(" \t") + 1);
}

std::string madeOver(std::string_view line, std::string_view launcher, bool isMainGroup) {
  const auto equals = line.find('=');
  const std::string_view key = equals == std::string_view::npos ? "" : keyOf(line);
  if (key == "Exec") {
    const auto value = line.find_first_not_of(" \t", equals + 1);
    return "Exec=" + std::string(launcher) + " " + std::string(line.substr(std::min(value, line.size()))) + '\n';
  }
  if (key == "DBusActivatable" || key == "MimeType" || line == mark) return {};
  if (key == "Name" && isMainGroup) return std::string(line) + std::string(suffix) + '\n';
  if (isMainGroup && line == "[Desktop Entry]") return std::string(line) + '\n' + std::string(mark) + '\n';
  return std::string(line) + '\n';
}

}  // namespace

std::optional<std::string> launcherEntry(std::string_view entry, std::string_view launcher) {
  const auto keys = posix::parseDesktopEntry(entry);
  if (!keys || !keys->contains("Exec") || !keys->contains("Name")) return std::nullopt;
  std::string result;
  bool isMainGroup = false;
  while (!entry.empty()) {
    const auto end = entry.find('\n');
    std::string_view line = entry.substr(0, end);
    entry.remove_prefix(end == std::string_view::npos ? entry.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.starts_with('[')) isMainGroup = line == "[Desktop Entry]";
    result += madeOver(line, launcher, isMainGroup);
  }
  return result;
}

bool isLauncherEntry(std::string_view entry) {
  const auto keys = posix::parseDesktopEntry(entry);
  return keys && keys->contains("X-Quillfade-Share");
}

}  // namespace platform::linux::lens
