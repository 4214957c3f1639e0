// Which bits of a key event's state stand for which modifier on this keyboard.
//
// Shift, Lock and Control have bits of their own; Alt, Super and the other locks share the five bits that the
// keyboard's modifier map assigns.
// Threads: one at a time. `readKeyboard` and `readModifiers` wait for the server's reply (one round trip).
// Failure: what the keyboard does not say, or a lost connection, leaves the usual assignment.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <span>
#include <vector>

namespace platform::linux::input {

struct Modifiers {
  std::uint16_t alt = XCB_MOD_MASK_1;
  std::uint16_t super = XCB_MOD_MASK_4;
  std::uint16_t numLock = XCB_MOD_MASK_2;
  std::uint16_t scrollLock = 0;

  // The bits that a hot key must not depend on.
  [[nodiscard]] std::uint16_t locks() const {
    return static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK | numLock | scrollLock);
  }
  friend bool operator==(const Modifiers&, const Modifiers&) = default;
};

// The keyboard's tables as the server returns them.
struct KeyboardTables {
  std::uint8_t keysPerModifier = 0;
  std::vector<xcb_keycode_t> modifierKeys;  // eight rows: Shift, Lock, Control, Mod1 to Mod5
  std::uint8_t firstKey = 0;
  std::uint8_t symbolsPerKey = 0;
  std::vector<xcb_keysym_t> symbols;
};

// Empty tables for a lost connection.
[[nodiscard]] KeyboardTables readKeyboard(xcb_connection_t* connection);
[[nodiscard]] Modifiers modifiersOf(const KeyboardTables& tables);
[[nodiscard]] Modifiers readModifiers(xcb_connection_t* connection);

// The state bits of a combination given with the bindings' modifier mask (Platform/HotKeys.h).
[[nodiscard]] std::uint16_t stateFor(std::uint32_t hotKeyModifiers, const Modifiers& modifiers);

// This state with every combination of the lock bits, including none.
[[nodiscard]] std::vector<std::uint16_t> withEveryLock(std::uint16_t state, const Modifiers& modifiers);

}  // namespace platform::linux::input
