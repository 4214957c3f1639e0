#include "Platform/Linux/Input/HotKeysModifiers.h"

#include <X11/keysym.h>

#include <algorithm>
#include <cstddef>

#include "Platform/HotKeys.h"
#include "Platform/Linux/Xcb/Replies.h"

namespace platform::linux::input {

namespace {

constexpr std::size_t firstSharedModifier = XCB_MAP_INDEX_1;
constexpr std::size_t modifierCount = 8;

bool keyGives(const KeyboardTables& tables, xcb_keycode_t key, xcb_keysym_t symbol) {
  if (key < tables.firstKey) return false;
  const std::size_t start = std::size_t{tables.symbolsPerKey} * (key - tables.firstKey);
  if (start + tables.symbolsPerKey > tables.symbols.size()) return false;
  const auto row = std::span(tables.symbols).subspan(start, tables.symbolsPerKey);
  return std::ranges::find(row, symbol) != row.end();
}

// The first of the five shared modifiers that has a key with this symbol; 0 when none has.
std::uint16_t modifierWith(const KeyboardTables& tables, xcb_keysym_t symbol) {
  for (std::size_t modifier = firstSharedModifier; modifier < modifierCount; ++modifier) {
    const std::size_t start = modifier * tables.keysPerModifier;
    if (start + tables.keysPerModifier > tables.modifierKeys.size()) break;
    const auto keys = std::span(tables.modifierKeys).subspan(start, tables.keysPerModifier);
    if (std::ranges::any_of(keys, [&](xcb_keycode_t key) { return key != 0 && keyGives(tables, key, symbol); })) {
      return static_cast<std::uint16_t>(1U << modifier);
    }
  }
  return 0;
}

std::uint16_t firstFound(const KeyboardTables& tables, xcb_keysym_t left, xcb_keysym_t right, std::uint16_t usual) {
  if (const std::uint16_t found = modifierWith(tables, left)) return found;
  if (const std::uint16_t found = modifierWith(tables, right)) return found;
  return usual;
}

}  // namespace

Modifiers modifiersOf(const KeyboardTables& tables) {
  const Modifiers usual;
  if (tables.modifierKeys.empty()) return usual;
  Modifiers modifiers;
  modifiers.alt = firstFound(tables, XK_Alt_L, XK_Alt_R, usual.alt);
  modifiers.super = firstFound(tables, XK_Super_L, XK_Super_R, usual.super);
  modifiers.numLock = modifierWith(tables, XK_Num_Lock);
  modifiers.scrollLock = modifierWith(tables, XK_Scroll_Lock);
  return modifiers;
}

KeyboardTables readKeyboard(xcb_connection_t* connection) {
  const xcb_setup_t* setup = xcb_get_setup(connection);
  const auto keyCount = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  const auto mapCookie = xcb_get_modifier_mapping(connection);
  const auto symbolsCookie = xcb_get_keyboard_mapping(connection, setup->min_keycode, keyCount);
  const auto map = xcb::awaitReply(connection, xcb_get_modifier_mapping_reply, mapCookie);
  const auto symbols = xcb::awaitReply(connection, xcb_get_keyboard_mapping_reply, symbolsCookie);
  if (!map || !symbols) return {};
  const std::span keys(xcb_get_modifier_mapping_keycodes(map.get()),
                       static_cast<std::size_t>(xcb_get_modifier_mapping_keycodes_length(map.get())));
  const std::span syms(xcb_get_keyboard_mapping_keysyms(symbols.get()),
                       static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(symbols.get())));
  return {.keysPerModifier = map->keycodes_per_modifier,
          .modifierKeys = {keys.begin(), keys.end()},
          .firstKey = setup->min_keycode,
          .symbolsPerKey = symbols->keysyms_per_keycode,
          .symbols = {syms.begin(), syms.end()}};
}

Modifiers readModifiers(xcb_connection_t* connection) { return modifiersOf(readKeyboard(connection)); }

std::uint16_t stateFor(std::uint32_t hotKeyModifiers, const Modifiers& modifiers) {
  unsigned state = 0;
  if ((hotKeyModifiers & hotkeymodifiers::control) != 0) state |= XCB_MOD_MASK_CONTROL;
  if ((hotKeyModifiers & hotkeymodifiers::option) != 0) state |= modifiers.alt;
  if ((hotKeyModifiers & hotkeymodifiers::command) != 0) state |= modifiers.super;
  constexpr std::uint32_t shift = 0x200;
  if ((hotKeyModifiers & shift) != 0) state |= XCB_MOD_MASK_SHIFT;
  return static_cast<std::uint16_t>(state);
}

std::vector<std::uint16_t> withEveryLock(std::uint16_t state, const Modifiers& modifiers) {
  std::vector<std::uint16_t> states{state};
  for (const std::uint16_t lock : {std::uint16_t{XCB_MOD_MASK_LOCK}, modifiers.numLock, modifiers.scrollLock}) {
    if (lock == 0 || (lock & state) != 0) continue;
    const std::size_t count = states.size();
    for (std::size_t i = 0; i < count; ++i) {
      const auto locked = static_cast<std::uint16_t>(states[i] | lock);
      if (std::ranges::find(states, locked) == states.end()) states.push_back(locked);
    }
  }
  return states;
}

}  // namespace platform::linux::input
