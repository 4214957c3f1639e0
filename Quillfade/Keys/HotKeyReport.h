// Which hot keys this instance holds, as text that people and other instances read.
//
// Pure.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Platform/HotKeys.h"
#include "Quillfade/Keys/HotKeyTable.h"

namespace quillfade {

struct HotKeyState {
  std::string combination;
  std::string word;  // on the command line
  platform::HotKeyStanding standing;
  [[nodiscard]] bool isBound() const { return standing.kind == platform::HotKeyStanding::Kind::held; }
  friend bool operator==(const HotKeyState&, const HotKeyState&) = default;
};

[[nodiscard]] HotKeyState hotKeyState(const HotKey& key, platform::HotKeyStanding standing);

// One line per hot key.
[[nodiscard]] std::string hotKeyText(const std::vector<HotKeyState>& states);
// The reverse; skips lines that `hotKeyText` does not write.
[[nodiscard]] std::vector<HotKeyState> parseHotKeyText(std::string_view text);

}  // namespace quillfade
