#include "Platform/Linux/Session/SettingsPrograms.h"

#include <algorithm>

namespace platform::linux::session {

namespace {

struct Entry {
  std::string_view desktop;
  std::vector<std::string> command;
};

const std::vector<Entry>& table() {
  static const std::vector<Entry> entries{
      {"GNOME", {"gnome-control-center", "privacy"}},
      {"Unity", {"unity-control-center", "privacy"}},
      {"KDE", {"systemsettings"}},
      {"KDE", {"systemsettings5"}},
      {"XFCE", {"xfce4-settings-manager"}},
      {"X-Cinnamon", {"cinnamon-settings", "privacy"}},
      {"MATE", {"mate-control-center"}},
      {"LXQt", {"lxqt-config"}},
      {"Pantheon", {"io.elementary.settings"}},
      {"Budgie", {"budgie-control-center", "privacy"}},
  };
  return entries;
}

bool isNamed(std::string_view desktops, std::string_view desktop) {
  while (!desktops.empty()) {
    const auto end = desktops.find(':');
    if (desktops.substr(0, end) == desktop) return true;
    desktops.remove_prefix(end == std::string_view::npos ? desktops.size() : end + 1);
  }
  return false;
}

}  // namespace

std::vector<std::vector<std::string>> settingsPrograms(std::string_view currentDesktop) {
  std::vector<std::vector<std::string>> own;
  std::vector<std::vector<std::string>> others;
  for (const Entry& entry : table()) (isNamed(currentDesktop, entry.desktop) ? own : others).push_back(entry.command);
  std::ranges::copy(others, std::back_inserter(own));
  return own;
}

}  // namespace platform::linux::session
