#include "Quillfade/Settings/UserRules.h"

#include <algorithm>

#include "Quillfade/Basics/EscapedText.h"

namespace quillfade {
namespace {

constexpr std::string_view alwaysExclude = "alwaysExclude";
constexpr std::string_view neverExclude = "neverExclude";
constexpr std::string_view hotKeysMember = "hotKeys";

std::string placeOf(const platform::RulesFileEntry& entry) {
  return escapedText(entry.member) + (entry.name.empty() ? "" : " " + escapedText(entry.name));
}

// Checks the entries one by one.
class Reading {
 public:
  void read(const platform::RulesFileEntry& entry) {
    const bool excludes = entry.member == alwaysExclude;
    if (excludes || entry.member == neverExclude) {
      readWindow(entry, excludes);
    } else if (entry.member == hotKeysMember) {
      readHotKey(entry);
    } else {
      fault(entry, "Only alwaysExclude, neverExclude and hotKeys are allowed.");
    }
  }
  void fault(std::string sentence) { rules_.faults.push_back(std::move(sentence)); }
  [[nodiscard]] UserRules result() {
    checkHotKeys();
    return std::move(rules_);
  }

 private:
  void fault(const platform::RulesFileEntry& entry, const std::string& sentence) {
    fault(placeOf(entry) + ": " + sentence);
  }

  void readWindow(const platform::RulesFileEntry& entry, bool excludes) {
    if (entry.name.empty()) return fault(entry, "This must be a list of strings, in square brackets.");
    if (!entry.text || entry.text->empty()) {
      return fault(entry, "A window is named by its owner or its class, as a string like \"Gromit-mpx\" or \"zoom*\".");
    }
    rules_.windows.push_back({*entry.text, excludes});
  }

  void readHotKey(const platform::RulesFileEntry& entry) {
    const auto key = std::ranges::find(rules_.hotKeys, entry.name, &HotKey::word);
    if (key == rules_.hotKeys.end()) {
      return fault(entry, "The hot keys are toggle, peek, select-area and whole-screen.");
    }
    if (!entry.text) return fault(entry, "A hot key is a string like \"Control+Alt+F9\".");
    const auto combination = parseCombination(*entry.text);
    if (!combination) return fault(entry, escapedText(combination.error()));
    key->combination = *combination;
  }

  // One combination cannot do two things; if it should, none of the user's choices counts.
  void checkHotKeys() {
    for (auto key = rules_.hotKeys.begin(); key != rules_.hotKeys.end(); ++key) {
      const auto other = std::find_if(rules_.hotKeys.begin(), key,
                                      [&](const HotKey& before) { return before.combination == key->combination; });
      if (other == key) continue;
      fault("hotKeys: " + combinationText(key->combination) + " is set for both " + std::string{other->word} + " and " +
            std::string{key->word} + ", so all four keep their built-in keys.");
      rules_.hotKeys = builtInHotKeys;
      return;
    }
  }

  UserRules rules_;
};

bool concerns(const WindowRule& rule, const platform::CaptureWindow& window) {
  const auto matches = [&](const std::string& name) { return matchesPattern(name, rule.pattern); };
  return (window.owningApplication && matches(window.owningApplication->bundleIdentifier)) ||
         std::ranges::any_of(window.names, matches);
}

}  // namespace

UserRules userRules(platform::RulesFile& file) {
  Reading reading;
  const auto entries = file.read();
  if (!entries) {
    reading.fault(entries.error().localizedDescription);
  } else if (*entries) {
    for (const auto& entry : **entries) reading.read(entry);
  }
  return reading.result();
}

const WindowRule* ruleFor(const platform::CaptureWindow& window, const std::vector<WindowRule>& rules) {
  const WindowRule* best = nullptr;
  const auto rank = [](const WindowRule& rule) { return (hasWildcards(rule) ? 0 : 2) + (rule.excludes ? 1 : 0); };
  for (const WindowRule& rule : rules) {
    if (concerns(rule, window) && (best == nullptr || rank(rule) > rank(*best))) best = &rule;
  }
  return best;
}

bool hasWildcards(const WindowRule& rule) { return rule.pattern.find_first_of("*?") != std::string::npos; }

// On a mismatch the last `*` takes one more character, so no pattern costs more than length times length.
bool matchesPattern(std::string_view text, std::string_view pattern) {
  std::size_t at = 0;
  std::size_t in = 0;
  std::size_t starAt = std::string_view::npos;
  std::size_t resumeAt = 0;
  while (at < text.size()) {
    if (in < pattern.size() && pattern[in] == '*') {
      starAt = in++;
      resumeAt = at;
    } else if (in < pattern.size() && (pattern[in] == '?' || pattern[in] == text[at])) {
      ++at;
      ++in;
    } else if (starAt != std::string_view::npos) {
      in = starAt + 1;
      at = ++resumeAt;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', in) == std::string_view::npos;
}

}  // namespace quillfade
