#include "Quillfade/Cover/ExclusionRules.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "Platform/AsciiCase.h"

namespace quillfade {
namespace {

constexpr std::int64_t highLayerMinimum = 500;
constexpr std::int64_t conferencingLayerMinimum = 1;
constexpr double coverageThreshold = 0.3;

constexpr std::array<std::string_view, 7> conferencingFragments{"slack", "skype",   "zoom",           "teams",
                                                                "webex", "discord", "screencaptureui"};

// Full Unicode lower case, as far as it matters here: the fragments are ASCII, and besides the ASCII capitals only two
// characters have a lower-case form that contains an ASCII letter.
std::string lowercased(std::string_view text) {
  constexpr std::string_view kelvinSign = "\xE2\x84\xAA";
  constexpr std::string_view capitalIWithDot = "\xC4\xB0";
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    if (text.starts_with(kelvinSign)) {
      result += 'k';
      text.remove_prefix(kelvinSign.size());
    } else if (text.starts_with(capitalIWithDot)) {
      result += "i\xCC\x87";
      text.remove_prefix(capitalIWithDot.size());
    } else {
      result += platform::asciiLowerCase(text.front());
      text.remove_prefix(1);
    }
  }
  return result;
}

bool belongsToConferencing(const platform::CaptureWindow& window) {
  // The table keeps its capitals, since the log compares identifiers as they are written. Entries with capitals are not
  // found here and need not be: a fragment matches each of them.
  const std::string identifier = lowercased(ownerIdentifier(window).value_or(""));
  return conferencing().contains(identifier) || std::ranges::any_of(conferencingFragments, [&](std::string_view part) {
           return identifier.find(part) != std::string::npos;
         });
}

bool mayDecide(const WindowRule& rule, const platform::CaptureWindow& window) {
  if (!rule.excludes) return true;
  if (window.sheet == platform::ScreenSheet::perhapsLocker) return !hasWildcards(rule);
  return window.sheet != platform::ScreenSheet::locker;
}

Judgement keptAs(platform::ScreenSheet sheet) {
  switch (sheet) {
    case platform::ScreenSheet::none:
      return Judgement::keptOrdinary;
    case platform::ScreenSheet::takesPointer:
      return Judgement::keptTakesPointer;
    case platform::ScreenSheet::perhapsLocker:
      return Judgement::keptPerhapsLocker;
    case platform::ScreenSheet::locker:
      return Judgement::keptLocker;
  }
  return Judgement::keptOrdinary;
}

}  // namespace

const std::set<std::string, std::less<>>& conferencing() {
  // Never destroyed: the process may end by exit() at any time.
  static const auto& identifiers = *new const std::set<std::string, std::less<>>{
      "com.tinyspeck.slackmacgap",  "com.slack.Slack", "us.zoom.xos", "com.microsoft.teams2", "com.microsoft.teams",
      "com.cisco.webexmeetingsapp", "com.hnc.Discord",
  };
  return identifiers;
}

std::optional<std::string> ownerIdentifier(const platform::CaptureWindow& window) {
  if (!window.owningApplication) return std::nullopt;
  return window.owningApplication->bundleIdentifier;
}

Judgement judge(const platform::CaptureWindow& window, const platform::Screen& screen,
                const std::optional<std::string>& ownIdentifier, const std::vector<WindowRule>& userRules) {
  if (!window.isOnScreen) return Judgement::keptOffScreen;
  if (ownerIdentifier(window) == ownIdentifier) return Judgement::excludedOwn;
  if (const auto* rule = ruleFor(window, userRules); rule != nullptr && mayDecide(*rule, window)) {
    return rule->excludes ? Judgement::excludedByUser : Judgement::keptByUser;
  }
  const double screenArea = screen.frame.width() * screen.frame.height();
  if (!(screenArea > 0)) return Judgement::keptScreenWithoutArea;
  const double windowArea = window.frame.width() * window.frame.height();
  if (!std::isfinite(windowArea)) return Judgement::keptWindowWithoutArea;
  const bool isLarge = windowArea / screenArea > coverageThreshold;
  if (window.windowLayer >= highLayerMinimum && isLarge) return Judgement::excludedHighLayer;
  if (!belongsToConferencing(window)) return keptAs(window.sheet);
  const bool floats = window.windowLayer >= conferencingLayerMinimum;
  return floats && isLarge ? Judgement::excludedConferencing : Judgement::keptConferencing;
}

bool isExcluded(Judgement judgement) {
  return judgement == Judgement::excludedOwn || judgement == Judgement::excludedByUser ||
         judgement == Judgement::excludedHighLayer || judgement == Judgement::excludedConferencing;
}

std::string_view reason(Judgement judgement) {
  switch (judgement) {
    case Judgement::keptOffScreen:
      return "not on screen";
    case Judgement::excludedOwn:
      return "belongs to Quillfade";
    case Judgement::excludedByUser:
      return "left out by your rule";
    case Judgement::keptByUser:
      return "kept by your rule";
    case Judgement::keptScreenWithoutArea:
      return "the screen has no area";
    case Judgement::keptWindowWithoutArea:
      return "its size is not a finite number";
    case Judgement::excludedHighLayer:
      return "large, on an overlay layer";
    case Judgement::keptOrdinary:
      return "not a large overlay";
    case Judgement::excludedConferencing:
      return "large floating window of a conferencing program";
    case Judgement::keptConferencing:
      return "belongs to a conferencing program, but is small or not floating";
    case Judgement::keptTakesPointer:
      return "takes the pointer";
    case Judgement::keptPerhapsLocker:
      return "takes the pointer and could be a lock screen";
    case Judgement::keptLocker:
      return "could be a lock screen";
  }
  return "";
}

std::vector<platform::CaptureWindow> excludedWindows(const platform::ShareableContent& content,
                                                     const platform::Screen& screen,
                                                     const std::optional<std::string>& ownIdentifier,
                                                     const std::vector<WindowRule>& userRules) {
  std::vector<platform::CaptureWindow> excluded;
  std::ranges::copy_if(content.windows, std::back_inserter(excluded), [&](const platform::CaptureWindow& window) {
    return isExcluded(judge(window, screen, ownIdentifier, userRules));
  });
  return excluded;
}

std::vector<std::uint32_t> admittedWindows(const platform::ShareableContent& content,
                                           std::span<const platform::CaptureWindow> excluded) {
  std::vector<std::uint32_t> admitted;
  for (const auto& window : content.windows) {
    if (std::ranges::find(excluded, window.windowID, &platform::CaptureWindow::windowID) == excluded.end())
      admitted.push_back(window.windowID);
  }
  return admitted;
}

platform::HeldBackWindows holdingBack(const platform::Screen& screen, const std::vector<std::uint32_t>& admitted,
                                      const std::vector<WindowRule>& userRules) {
  const bool sizeMatters = std::ranges::none_of(userRules, &WindowRule::excludes);
  const double fromArea = sizeMatters ? coverageThreshold * screen.frame.width() * screen.frame.height() : 0;
  return {.fromArea = fromArea, .admitted = admitted};
}

std::string key(std::span<const platform::CaptureWindow> windows) {
  std::vector<std::uint32_t> numbers;
  numbers.reserve(windows.size());
  for (const auto& window : windows) numbers.push_back(window.windowID);
  std::ranges::sort(numbers);
  std::string text;
  for (const auto number : numbers) {
    if (!text.empty()) text += ',';
    text += std::to_string(number);
  }
  return text;
}

}  // namespace quillfade
