#include "Platform/Linux/Input/HotKeysCodes.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <array>

namespace platform::linux::input {

namespace {

struct KeyPosition {
  std::uint32_t virtualKey;
  std::uint8_t inputCode;
};

constexpr std::array keyPositions{
    KeyPosition{0x00, KEY_A},          KeyPosition{0x01, KEY_S},          KeyPosition{0x02, KEY_D},
    KeyPosition{0x03, KEY_F},          KeyPosition{0x04, KEY_H},          KeyPosition{0x05, KEY_G},
    KeyPosition{0x06, KEY_Z},          KeyPosition{0x07, KEY_X},          KeyPosition{0x08, KEY_C},
    KeyPosition{0x09, KEY_V},          KeyPosition{0x0A, KEY_102ND},      KeyPosition{0x0B, KEY_B},
    KeyPosition{0x0C, KEY_Q},          KeyPosition{0x0D, KEY_W},          KeyPosition{0x0E, KEY_E},
    KeyPosition{0x0F, KEY_R},          KeyPosition{0x10, KEY_Y},          KeyPosition{0x11, KEY_T},
    KeyPosition{0x12, KEY_1},          KeyPosition{0x13, KEY_2},          KeyPosition{0x14, KEY_3},
    KeyPosition{0x15, KEY_4},          KeyPosition{0x16, KEY_6},          KeyPosition{0x17, KEY_5},
    KeyPosition{0x18, KEY_EQUAL},      KeyPosition{0x19, KEY_9},          KeyPosition{0x1A, KEY_7},
    KeyPosition{0x1B, KEY_MINUS},      KeyPosition{0x1C, KEY_8},          KeyPosition{0x1D, KEY_0},
    KeyPosition{0x1E, KEY_RIGHTBRACE}, KeyPosition{0x1F, KEY_O},          KeyPosition{0x20, KEY_U},
    KeyPosition{0x21, KEY_LEFTBRACE},  KeyPosition{0x22, KEY_I},          KeyPosition{0x23, KEY_P},
    KeyPosition{0x24, KEY_ENTER},      KeyPosition{0x25, KEY_L},          KeyPosition{0x26, KEY_J},
    KeyPosition{0x27, KEY_APOSTROPHE}, KeyPosition{0x28, KEY_K},          KeyPosition{0x29, KEY_SEMICOLON},
    KeyPosition{0x2A, KEY_BACKSLASH},  KeyPosition{0x2B, KEY_COMMA},      KeyPosition{0x2C, KEY_SLASH},
    KeyPosition{0x2D, KEY_N},          KeyPosition{0x2E, KEY_M},          KeyPosition{0x2F, KEY_DOT},
    KeyPosition{0x30, KEY_TAB},        KeyPosition{0x31, KEY_SPACE},      KeyPosition{0x32, KEY_GRAVE},
    KeyPosition{0x33, KEY_BACKSPACE},  KeyPosition{0x35, KEY_ESC},        KeyPosition{0x36, KEY_RIGHTMETA},
    KeyPosition{0x37, KEY_LEFTMETA},   KeyPosition{0x38, KEY_LEFTSHIFT},  KeyPosition{0x39, KEY_CAPSLOCK},
    KeyPosition{0x3A, KEY_LEFTALT},    KeyPosition{0x3B, KEY_LEFTCTRL},   KeyPosition{0x3C, KEY_RIGHTSHIFT},
    KeyPosition{0x3D, KEY_RIGHTALT},   KeyPosition{0x3E, KEY_RIGHTCTRL},  KeyPosition{0x40, KEY_F17},
    KeyPosition{0x41, KEY_KPDOT},      KeyPosition{0x43, KEY_KPASTERISK}, KeyPosition{0x45, KEY_KPPLUS},
    KeyPosition{0x47, KEY_NUMLOCK},    KeyPosition{0x48, KEY_VOLUMEUP},   KeyPosition{0x49, KEY_VOLUMEDOWN},
    KeyPosition{0x4A, KEY_MUTE},       KeyPosition{0x4B, KEY_KPSLASH},    KeyPosition{0x4C, KEY_KPENTER},
    KeyPosition{0x4E, KEY_KPMINUS},    KeyPosition{0x4F, KEY_F18},        KeyPosition{0x50, KEY_F19},
    KeyPosition{0x51, KEY_KPEQUAL},    KeyPosition{0x52, KEY_KP0},        KeyPosition{0x53, KEY_KP1},
    KeyPosition{0x54, KEY_KP2},        KeyPosition{0x55, KEY_KP3},        KeyPosition{0x56, KEY_KP4},
    KeyPosition{0x57, KEY_KP5},        KeyPosition{0x58, KEY_KP6},        KeyPosition{0x59, KEY_KP7},
    KeyPosition{0x5A, KEY_F20},        KeyPosition{0x5B, KEY_KP8},        KeyPosition{0x5C, KEY_KP9},
    KeyPosition{0x60, KEY_F5},         KeyPosition{0x61, KEY_F6},         KeyPosition{0x62, KEY_F7},
    KeyPosition{0x63, KEY_F3},         KeyPosition{0x64, KEY_F8},         KeyPosition{0x65, KEY_F9},
    KeyPosition{0x67, KEY_F11},        KeyPosition{0x69, KEY_F13},        KeyPosition{0x6A, KEY_F16},
    KeyPosition{0x6B, KEY_F14},        KeyPosition{0x6D, KEY_F10},        KeyPosition{0x6F, KEY_F12},
    KeyPosition{0x71, KEY_F15},        KeyPosition{0x72, KEY_INSERT},     KeyPosition{0x73, KEY_HOME},
    KeyPosition{0x74, KEY_PAGEUP},     KeyPosition{0x75, KEY_DELETE},     KeyPosition{0x76, KEY_F4},
    KeyPosition{0x77, KEY_END},        KeyPosition{0x78, KEY_F2},         KeyPosition{0x79, KEY_PAGEDOWN},
    KeyPosition{0x7A, KEY_F1},         KeyPosition{0x7B, KEY_LEFT},       KeyPosition{0x7C, KEY_RIGHT},
    KeyPosition{0x7D, KEY_DOWN},       KeyPosition{0x7E, KEY_UP},
};

constexpr std::uint8_t serverOffset = 8;

}  // namespace

std::optional<std::uint8_t> keyCodeForVirtualKey(std::uint32_t virtualKey) {
  const auto position = std::ranges::find(keyPositions, virtualKey, &KeyPosition::virtualKey);
  if (position == keyPositions.end()) return std::nullopt;
  return static_cast<std::uint8_t>(position->inputCode + serverOffset);
}

}  // namespace platform::linux::input
