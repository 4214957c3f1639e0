#include "Quillfade/Keys/KeyCombination.h"

#include <algorithm>
#include <array>
#include <optional>

#include "Platform/AsciiCase.h"
#include "Platform/HotKeys.h"

namespace quillfade {
namespace {

namespace modifiers = platform::hotkeymodifiers;

struct Name {
  std::string_view text;
  std::uint32_t value;
};

// Where a value has several names, the first is the one that is written.
constexpr std::array modifierNames{
    Name{"Control", modifiers::control}, Name{"Alt", modifiers::option},      Name{"Super", modifiers::command},
    Name{"Ctrl", modifiers::control},    Name{"Option", modifiers::option},   Name{"Command", modifiers::command},
    Name{"Meta", modifiers::command},    Name{"Windows", modifiers::command},
};

constexpr std::array keyNames{
    Name{"A", 0x00},      Name{"S", 0x01},      Name{"D", 0x02},     Name{"F", 0x03},         Name{"H", 0x04},
    Name{"G", 0x05},      Name{"Z", 0x06},      Name{"X", 0x07},     Name{"C", 0x08},         Name{"V", 0x09},
    Name{"B", 0x0B},      Name{"Q", 0x0C},      Name{"W", 0x0D},     Name{"E", 0x0E},         Name{"R", 0x0F},
    Name{"Y", 0x10},      Name{"T", 0x11},      Name{"1", 0x12},     Name{"2", 0x13},         Name{"3", 0x14},
    Name{"4", 0x15},      Name{"6", 0x16},      Name{"5", 0x17},     Name{"Equal", 0x18},     Name{"9", 0x19},
    Name{"7", 0x1A},      Name{"Minus", 0x1B},  Name{"8", 0x1C},     Name{"0", 0x1D},         Name{"O", 0x1F},
    Name{"U", 0x20},      Name{"I", 0x22},      Name{"P", 0x23},     Name{"Return", 0x24},    Name{"L", 0x25},
    Name{"J", 0x26},      Name{"Quote", 0x27},  Name{"K", 0x28},     Name{"Semicolon", 0x29}, Name{"Backslash", 0x2A},
    Name{"Comma", 0x2B},  Name{"Slash", 0x2C},  Name{"N", 0x2D},     Name{"M", 0x2E},         Name{"Period", 0x2F},
    Name{"Tab", 0x30},    Name{"Space", 0x31},  Name{"Grave", 0x32}, Name{"Backspace", 0x33}, Name{"F5", 0x60},
    Name{"F6", 0x61},     Name{"F7", 0x62},     Name{"F3", 0x63},    Name{"F8", 0x64},        Name{"F9", 0x65},
    Name{"F11", 0x67},    Name{"F10", 0x6D},    Name{"F12", 0x6F},   Name{"Home", 0x73},      Name{"PageUp", 0x74},
    Name{"Delete", 0x75}, Name{"F4", 0x76},     Name{"End", 0x77},   Name{"F2", 0x78},        Name{"PageDown", 0x79},
    Name{"F1", 0x7A},     Name{"Left", 0x7B},   Name{"Right", 0x7C}, Name{"Down", 0x7D},      Name{"Up", 0x7E},
    Name{"Escape", 0x35}, Name{"Insert", 0x72},
};

std::optional<std::uint32_t> valueOf(std::string_view text, const auto& names) {
  const auto found = std::ranges::find_if(names, [&](const Name& name) {
    return std::ranges::equal(name.text, text, {}, platform::asciiLowerCase, platform::asciiLowerCase);
  });
  return found == names.end() ? std::nullopt : std::optional(found->value);
}

}  // namespace

std::expected<KeyCombination, std::string> parseCombination(std::string_view text) {
  const auto last = text.rfind('+');
  const std::string_view keyName = last == std::string_view::npos ? text : text.substr(last + 1);
  const auto key = valueOf(keyName, keyNames);
  if (!key) return std::unexpected("There is no key \"" + std::string{keyName} + "\".");
  KeyCombination combination{.keyCode = *key};
  std::string_view rest = last == std::string_view::npos ? std::string_view{} : text.substr(0, last + 1);
  while (!rest.empty()) {
    const std::string_view name = rest.substr(0, rest.find('+'));
    const auto modifier = valueOf(name, modifierNames);
    if (!modifier) {
      return std::unexpected("\"" + std::string{name} + "\" is not Control, Alt or Super.");
    }
    combination.modifiers |= *modifier;
    rest.remove_prefix(name.size() + 1);
  }
  if (combination.modifiers == 0) return std::unexpected("A hot key needs Control, Alt or Super.");
  return combination;
}

std::string keyName(const KeyCombination& combination) {
  const auto key = std::ranges::find(keyNames, combination.keyCode, &Name::value);
  return key == keyNames.end() ? std::to_string(combination.keyCode) : std::string{key->text};
}

std::string combinationText(const KeyCombination& combination) {
  std::string text;
  std::uint32_t left = combination.modifiers;
  for (const Name& name : modifierNames) {
    if ((left & name.value) == 0) continue;
    text += std::string{name.text} + '+';
    left &= ~name.value;
  }
  return text + keyName(combination);
}

}  // namespace quillfade
