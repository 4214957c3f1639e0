// The user's own rules, checked: windows that a live copy always or never leaves out, and hot keys in place of the
// built-in ones.
//
// A faulty entry has no effect and leaves a sentence; the other entries hold. Without a file everything is as built in.
//
// Threads: main thread only.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Platform/Capture.h"
#include "Platform/RulesFile.h"
#include "Quillfade/Keys/HotKeyTable.h"

namespace quillfade {

struct WindowRule {
  std::string pattern;  // `*` stands for any characters, `?` for one, all else for itself
  bool excludes = false;
  friend bool operator==(const WindowRule&, const WindowRule&) = default;
};

struct UserRules {
  std::vector<WindowRule> windows;
  HotKeyTable hotKeys = builtInHotKeys;
  std::vector<std::string> faults;  // sentences
};

[[nodiscard]] UserRules userRules(platform::RulesFile& file);

// The rule that decides about a window, by its owner's identifier or one of its names; null when none does. A rule
// without wildcards comes before one with them; among those, one that leaves out before one that keeps.
[[nodiscard]] const WindowRule* ruleFor(const platform::CaptureWindow& window, const std::vector<WindowRule>& rules);

// Whether it may match names that nobody thought of.
[[nodiscard]] bool hasWildcards(const WindowRule& rule);

// Compares bytes; case matters.
[[nodiscard]] bool matchesPattern(std::string_view text, std::string_view pattern);

}  // namespace quillfade
