#include "Platform/Linux/Shortcuts/KeySymbols.h"

#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <Qt>
#include <algorithm>
#include <array>

#include "Platform/HotKeys.h"
#include "Platform/Linux/Input/HotKeysCodes.h"

namespace platform::linux::shortcuts {
namespace {

constexpr std::uint32_t positionOfA = 0;
constexpr std::uint32_t positionOfM = 0x2E;
constexpr std::uint32_t positionOf1 = 0x12;
constexpr std::uint32_t everyModifier = 6400;

// A keyboard with this symbol at that position, and none anywhere else.
input::KeyboardTables keyboardWith(std::uint32_t virtualKey, xcb_keysym_t symbol) {
  input::KeyboardTables keyboard{.firstKey = 8, .symbolsPerKey = 2};
  keyboard.symbols.resize(std::size_t{2} * 248, XCB_NO_SYMBOL);
  keyboard.symbols.at(std::size_t{2} * (*input::keyCodeForVirtualKey(virtualKey) - 8U)) = symbol;
  return keyboard;
}

TEST(KeySymbols, APositionIsNamedByWhatTheLayoutHasThere) {
  EXPECT_EQ(keySymbolAt(positionOfA, keyboardWith(positionOfA, XK_a)), (KeySymbol{"a", Qt::Key_A}));
  EXPECT_EQ(keySymbolAt(positionOfA, keyboardWith(positionOfA, XK_q)), (KeySymbol{"q", Qt::Key_Q}));
  EXPECT_EQ(keySymbolAt(positionOfM, keyboardWith(positionOfM, XK_comma)), (KeySymbol{"comma", Qt::Key_Comma}));
  EXPECT_EQ(keySymbolAt(positionOf1, keyboardWith(positionOf1, XK_ampersand)),
            (KeySymbol{"ampersand", Qt::Key_Ampersand}));
}

TEST(KeySymbols, ALetterOfAnotherScriptGivesWayToTheAmericanOne) {
  EXPECT_EQ(keySymbolAt(positionOfA, keyboardWith(positionOfA, XK_Cyrillic_ef)), (KeySymbol{"a", Qt::Key_A}));
  EXPECT_EQ(keySymbolAt(positionOfA, {}), (KeySymbol{"a", Qt::Key_A}));
  EXPECT_EQ(keySymbolAt(0x65, {}), (KeySymbol{"F9", Qt::Key_F9}));
}

TEST(KeySymbols, EveryKeyThatTheRulesCanNameHasASymbol) {
  for (std::uint32_t key = 0; key <= 0x35; ++key) {
    constexpr std::array<std::uint32_t, 4> unnamed{0x0A, 0x1E, 0x21, 0x34};
    const bool isNamed = std::ranges::find(unnamed, key) == unnamed.end();
    EXPECT_EQ(keySymbolAt(key, {}).has_value(), isNamed) << key;
  }
  EXPECT_FALSE(keySymbolAt(0x34, {}));
  EXPECT_FALSE(keySymbolAt(0x48, {})) << "the volume's key";
}

TEST(KeySymbols, ATriggerNamesModifiersAndKey) {
  EXPECT_EQ(triggerText(everyModifier, {"d", Qt::Key_D}), "CTRL+ALT+LOGO+d");
  EXPECT_EQ(triggerText(hotkeymodifiers::command, {"Page_Up", Qt::Key_PageUp}), "LOGO+Page_Up");
}

TEST(KeySymbols, ACombinedKeyIsQtsNumberForModifiersAndKey) {
  EXPECT_EQ(combinedKey(everyModifier, {"d", Qt::Key_D}), 0x1c000044);
  EXPECT_EQ(combinedKey(hotkeymodifiers::option, {"F9", Qt::Key_F9}), 0x09000038);
}

}  // namespace
}  // namespace platform::linux::shortcuts
