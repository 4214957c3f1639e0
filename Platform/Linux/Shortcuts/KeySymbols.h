// From key positions to the symbols that the desktop's services name keys by.
//
// Those services know no positions. So a position is named by the symbol that the keyboard's first layout has there: on
// a French keyboard, the key beside Caps Lock is "q". A symbol that has no name in them, such as a Cyrillic letter,
// gives way to the one that an American keyboard has there. Threads: pure functions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Linux/Input/HotKeysModifiers.h"

namespace platform::linux::shortcuts {

struct KeySymbol {
  std::string name;  // as in xkbcommon-keysyms.h, without the prefix
  int key = 0;       // of Qt::Key
  friend bool operator==(const KeySymbol&, const KeySymbol&) = default;
};

// Absent for a position that no ordinary keyboard has, or that has no symbol.
[[nodiscard]] std::optional<KeySymbol> keySymbolAt(std::uint32_t virtualKey, const input::KeyboardTables& keyboard);

// The masks are those of `hotkeymodifiers`.
// As in "CTRL+ALT+LOGO+d".
[[nodiscard]] std::string triggerText(std::uint32_t modifiers, const KeySymbol& symbol);
// A key of Qt with its modifiers, as one number.
[[nodiscard]] int combinedKey(std::uint32_t modifiers, const KeySymbol& symbol);

}  // namespace platform::linux::shortcuts
