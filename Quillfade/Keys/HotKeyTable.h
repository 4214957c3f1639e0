// The four hot keys: their names on the command line, and their combinations unless the user chose others.
//
// Pure.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Platform/HotKeys.h"
#include "Quillfade/Keys/KeyCombination.h"

namespace quillfade {

enum class HotKeyCommand : std::uint8_t { toggle, peek, selectArea, wholeScreen };

struct HotKey {
  HotKeyCommand command;
  std::string_view word;  // on the command line, and in the user's rules
  KeyCombination combination;
  std::string_view title;  // in the menu; English
  friend bool operator==(const HotKey&, const HotKey&) = default;
};

using HotKeyTable = std::array<HotKey, 4>;

inline constexpr std::uint32_t builtInModifiers =
    platform::hotkeymodifiers::control | platform::hotkeymodifiers::option | platform::hotkeymodifiers::command;

// In binding order.
inline constexpr HotKeyTable builtInHotKeys{{
    {HotKeyCommand::toggle, "toggle", {2, builtInModifiers}, "Hide Annotations"},         // D
    {HotKeyCommand::peek, "peek", {35, builtInModifiers}, "Peek for 5 Seconds"},          // P
    {HotKeyCommand::selectArea, "select-area", {0, builtInModifiers}, "Select Area…"},    // A
    {HotKeyCommand::wholeScreen, "whole-screen", {3, builtInModifiers}, "Whole Screen"},  // F
}};

}  // namespace quillfade
