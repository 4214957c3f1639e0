#include "Platform/Linux/Shortcuts/KeySymbols.h"

#include <X11/keysym.h>

#include <Qt>
#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "Platform/HotKeys.h"
#include "Platform/Linux/Input/HotKeysCodes.h"

namespace platform::linux::shortcuts {
namespace {

struct Position {
  std::uint32_t virtualKey;
  xcb_keysym_t symbol;  // on an American keyboard
};

constexpr std::array positions{
    Position{0x00, XK_a},          Position{0x01, XK_s},       Position{0x02, XK_d},
    Position{0x03, XK_f},          Position{0x04, XK_h},       Position{0x05, XK_g},
    Position{0x06, XK_z},          Position{0x07, XK_x},       Position{0x08, XK_c},
    Position{0x09, XK_v},          Position{0x0B, XK_b},       Position{0x0C, XK_q},
    Position{0x0D, XK_w},          Position{0x0E, XK_e},       Position{0x0F, XK_r},
    Position{0x10, XK_y},          Position{0x11, XK_t},       Position{0x12, XK_1},
    Position{0x13, XK_2},          Position{0x14, XK_3},       Position{0x15, XK_4},
    Position{0x16, XK_6},          Position{0x17, XK_5},       Position{0x18, XK_equal},
    Position{0x19, XK_9},          Position{0x1A, XK_7},       Position{0x1B, XK_minus},
    Position{0x1C, XK_8},          Position{0x1D, XK_0},       Position{0x1F, XK_o},
    Position{0x20, XK_u},          Position{0x22, XK_i},       Position{0x23, XK_p},
    Position{0x24, XK_Return},     Position{0x25, XK_l},       Position{0x26, XK_j},
    Position{0x27, XK_apostrophe}, Position{0x28, XK_k},       Position{0x29, XK_semicolon},
    Position{0x2A, XK_backslash},  Position{0x2B, XK_comma},   Position{0x2C, XK_slash},
    Position{0x2D, XK_n},          Position{0x2E, XK_m},       Position{0x2F, XK_period},
    Position{0x30, XK_Tab},        Position{0x31, XK_space},   Position{0x32, XK_grave},
    Position{0x33, XK_BackSpace},  Position{0x35, XK_Escape},  Position{0x60, XK_F5},
    Position{0x61, XK_F6},         Position{0x62, XK_F7},      Position{0x63, XK_F3},
    Position{0x64, XK_F8},         Position{0x65, XK_F9},      Position{0x67, XK_F11},
    Position{0x6D, XK_F10},        Position{0x6F, XK_F12},     Position{0x72, XK_Insert},
    Position{0x73, XK_Home},       Position{0x74, XK_Page_Up}, Position{0x75, XK_Delete},
    Position{0x76, XK_F4},         Position{0x77, XK_End},     Position{0x78, XK_F2},
    Position{0x79, XK_Page_Down},  Position{0x7A, XK_F1},      Position{0x7B, XK_Left},
    Position{0x7C, XK_Right},      Position{0x7D, XK_Down},    Position{0x7E, XK_Up},
};

struct Named {
  xcb_keysym_t symbol;
  const char* name;
  int key;
};

// Symbols of ASCII have the number of their character here and there.
constexpr std::array names{
    Named{XK_space, "space", Qt::Key_Space},
    Named{XK_exclam, "exclam", Qt::Key_Exclam},
    Named{XK_quotedbl, "quotedbl", Qt::Key_QuoteDbl},
    Named{XK_numbersign, "numbersign", Qt::Key_NumberSign},
    Named{XK_dollar, "dollar", Qt::Key_Dollar},
    Named{XK_ampersand, "ampersand", Qt::Key_Ampersand},
    Named{XK_apostrophe, "apostrophe", Qt::Key_Apostrophe},
    Named{XK_parenleft, "parenleft", Qt::Key_ParenLeft},
    Named{XK_parenright, "parenright", Qt::Key_ParenRight},
    Named{XK_asterisk, "asterisk", Qt::Key_Asterisk},
    Named{XK_plus, "plus", Qt::Key_Plus},
    Named{XK_comma, "comma", Qt::Key_Comma},
    Named{XK_minus, "minus", Qt::Key_Minus},
    Named{XK_period, "period", Qt::Key_Period},
    Named{XK_slash, "slash", Qt::Key_Slash},
    Named{XK_colon, "colon", Qt::Key_Colon},
    Named{XK_semicolon, "semicolon", Qt::Key_Semicolon},
    Named{XK_less, "less", Qt::Key_Less},
    Named{XK_equal, "equal", Qt::Key_Equal},
    Named{XK_underscore, "underscore", Qt::Key_Underscore},
    Named{XK_bracketleft, "bracketleft", Qt::Key_BracketLeft},
    Named{XK_backslash, "backslash", Qt::Key_Backslash},
    Named{XK_bracketright, "bracketright", Qt::Key_BracketRight},
    Named{XK_asciicircum, "asciicircum", Qt::Key_AsciiCircum},
    Named{XK_grave, "grave", Qt::Key_QuoteLeft},
    Named{XK_Return, "Return", Qt::Key_Return},
    Named{XK_Tab, "Tab", Qt::Key_Tab},
    Named{XK_BackSpace, "BackSpace", Qt::Key_Backspace},
    Named{XK_Escape, "Escape", Qt::Key_Escape},
    Named{XK_Insert, "Insert", Qt::Key_Insert},
    Named{XK_Delete, "Delete", Qt::Key_Delete},
    Named{XK_Home, "Home", Qt::Key_Home},
    Named{XK_End, "End", Qt::Key_End},
    Named{XK_Page_Up, "Page_Up", Qt::Key_PageUp},
    Named{XK_Page_Down, "Page_Down", Qt::Key_PageDown},
    Named{XK_Left, "Left", Qt::Key_Left},
    Named{XK_Right, "Right", Qt::Key_Right},
    Named{XK_Down, "Down", Qt::Key_Down},
    Named{XK_Up, "Up", Qt::Key_Up},
};

std::optional<KeySymbol> named(xcb_keysym_t symbol) {
  const bool isLetter = symbol >= XK_a && symbol <= XK_z;
  if (isLetter || (symbol >= XK_0 && symbol <= XK_9)) {
    constexpr xcb_keysym_t toCapital = XK_a - XK_A;
    return KeySymbol{std::string(1, static_cast<char>(symbol)),
                     static_cast<int>(isLetter ? symbol - toCapital : symbol)};
  }
  if (symbol >= XK_F1 && symbol <= XK_F12) {
    const auto number = static_cast<int>(symbol - XK_F1);
    return KeySymbol{"F" + std::to_string(number + 1), Qt::Key_F1 + number};
  }
  const auto found = std::ranges::find(names, symbol, &Named::symbol);
  return found == names.end() ? std::nullopt : std::optional(KeySymbol{found->name, found->key});
}

// The symbol of the first layout, without Shift; 0 where there is none.
xcb_keysym_t symbolAt(std::uint8_t key, const input::KeyboardTables& keyboard) {
  if (key < keyboard.firstKey) return XCB_NO_SYMBOL;
  const std::size_t place = std::size_t{keyboard.symbolsPerKey} * (key - keyboard.firstKey);
  return place < keyboard.symbols.size() ? keyboard.symbols[place] : XCB_NO_SYMBOL;
}

}  // namespace

std::optional<KeySymbol> keySymbolAt(std::uint32_t virtualKey, const input::KeyboardTables& keyboard) {
  const auto key = input::keyCodeForVirtualKey(virtualKey);
  if (!key) return std::nullopt;
  if (auto symbol = named(symbolAt(*key, keyboard))) return symbol;
  const auto position = std::ranges::find(positions, virtualKey, &Position::virtualKey);
  return position == positions.end() ? std::nullopt : named(position->symbol);
}

std::string triggerText(std::uint32_t modifiers, const KeySymbol& symbol) {
  std::string text;
  if ((modifiers & hotkeymodifiers::control) != 0) text += "CTRL+";
  if ((modifiers & hotkeymodifiers::option) != 0) text += "ALT+";
  if ((modifiers & hotkeymodifiers::command) != 0) text += "LOGO+";
  return text + symbol.name;
}

int combinedKey(std::uint32_t modifiers, const KeySymbol& symbol) {
  unsigned combined = static_cast<unsigned>(symbol.key);
  if ((modifiers & hotkeymodifiers::control) != 0) combined |= Qt::CTRL;
  if ((modifiers & hotkeymodifiers::option) != 0) combined |= Qt::ALT;
  if ((modifiers & hotkeymodifiers::command) != 0) combined |= Qt::META;
  return static_cast<int>(combined);
}

}  // namespace platform::linux::shortcuts
