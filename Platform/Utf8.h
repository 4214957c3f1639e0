// The one place that knows what well-formed UTF-8 is: no overlong forms, no surrogates, nothing beyond U+10FFFF.
//
// Threads: pure functions, safe on any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace platform {

struct Utf8Character {
  char32_t code = 0;
  std::size_t length = 0;  // in bytes
};

// The character at the start of `bytes`; absent when there is none, or none that is well-formed.
[[nodiscard]] constexpr std::optional<Utf8Character> firstUtf8Character(std::string_view bytes) {
  struct Form {
    unsigned leadMask;
    unsigned lead;
    std::size_t length;
    char32_t least;
  };
  constexpr Form forms[]{{0x80, 0x00, 1, 0}, {0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}};
  if (bytes.empty()) return std::nullopt;
  const unsigned lead = static_cast<unsigned char>(bytes.front());
  for (const Form& form : forms) {
    if ((lead & form.leadMask) != form.lead) continue;
    if (bytes.size() < form.length) return std::nullopt;
    char32_t code = lead & ~form.leadMask;
    for (std::size_t i = 1; i < form.length; ++i) {
      const unsigned next = static_cast<unsigned char>(bytes[i]);
      if ((next & 0xC0U) != 0x80U) return std::nullopt;
      code = code << 6U | (next & 0x3FU);
    }
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < form.least || code > 0x10FFFF || isSurrogate) return std::nullopt;
    return Utf8Character{code, form.length};
  }
  return std::nullopt;
}

[[nodiscard]] constexpr bool isValidUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto character = firstUtf8Character(bytes);
    if (!character) return false;
    bytes.remove_prefix(character->length);
  }
  return true;
}

}  // namespace platform
