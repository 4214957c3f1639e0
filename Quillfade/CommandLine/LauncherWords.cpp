#include "Quillfade/CommandLine/LauncherWords.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quillfade {
namespace {

// Qt's. A session manager uses the first of them to start programs when it restores a session.
constexpr std::array<std::string_view, 19> withValue{
    "session", "display",     "geometry", "icon",       "name",           "platform", "platformpluginpath",
    "plugin",  "qwindowicon", "style",    "stylesheet", "qwindowtitle",   "title",    "platformtheme",
    "visual",  "text",        "im",       "inputstyle", "qwindowgeometry"};
constexpr std::array<std::string_view, 8> alone{"reverse",     "widgetcount", "nograb",   "dograb",
                                                "testability", "qdebug",      "noqdevel", "qmljsdebugger"};
constexpr std::array<std::string_view, 3> joinedToValue{"style=", "stylesheet=", "qmljsdebugger="};

bool isCapital(char letter) { return letter >= 'A' && letter <= 'Z'; }

// Overrides a setting for one run, as Foundation reads it on the Mac and in GNUstep.
bool namesSetting(std::string_view word) {
  return std::ranges::any_of(std::array<std::string_view, 3>{"-NS", "-Apple", "-GS"}, [&](std::string_view prefix) {
    return word.starts_with(prefix) && word.size() > prefix.size() && isCapital(word[prefix.size()]);
  });
}

// The process number that the Finder passes to a program.
bool isProcessNumber(std::string_view word) {
  constexpr std::string_view prefix = "-psn_";
  return word.starts_with(prefix) && word.size() > prefix.size();
}

// How many words this one takes up with its value; none when it is not of this kind.
std::size_t length(std::string_view word) {
  if (isProcessNumber(word)) return 1;
  if (namesSetting(word)) return 2;
  if (!word.starts_with('-')) return 0;
  // Two dashes count as one.
  const std::string_view name = word.substr(word.starts_with("--") ? 2 : 1);
  if (std::ranges::find(withValue, name) != withValue.end()) return 2;
  const bool isWhole = std::ranges::find(alone, name) != alone.end() ||
                       std::ranges::any_of(joinedToValue, [&](auto start) { return name.starts_with(start); });
  return isWhole ? 1 : 0;
}

}  // namespace

std::size_t launcherWords(const std::vector<std::string>& words) {
  std::size_t count = 0;
  while (count < words.size()) {
    const std::size_t more = length(words[count]);
    if (more == 0) break;
    count = std::min(count + more, words.size());
  }
  return count;
}

}  // namespace quillfade
