// Key combinations and how people write them, as in "Control+Alt+Super+D".
//
// Pure.
#pragma once

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

namespace quillfade {

struct KeyCombination {
  std::uint32_t keyCode = 0;    // a virtual key code: a position on the ANSI keyboard
  std::uint32_t modifiers = 0;  // of `platform::hotkeymodifiers`
  friend bool operator==(const KeyCombination&, const KeyCombination&) = default;
};

// Names follow the ANSI keyboard; case does not matter. At least one modifier is required, since the key is taken from
// every other program. The error is a sentence.
[[nodiscard]] std::expected<KeyCombination, std::string> parseCombination(std::string_view text);

// The name of the key alone; a key without one is written as a number.
[[nodiscard]] std::string keyName(const KeyCombination& combination);
// The reverse of `parseCombination`.
[[nodiscard]] std::string combinationText(const KeyCombination& combination);

}  // namespace quillfade
