#include "Quillfade/Basics/EscapedText.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Platform/Utf8.h"

namespace quillfade {
namespace {

// First and last of the characters that a reader does not see as such: both sets of control characters, characters
// without width, those that change the direction of the text, and those that end lines or paragraphs.
constexpr std::array<std::pair<char32_t, char32_t>, 8> invisible{{
    {0x00, 0x1F},
    {0x7F, 0x9F},
    {0xAD, 0xAD},
    {0x61C, 0x61C},
    {0x200B, 0x200F},
    {0x2028, 0x202E},
    {0x2060, 0x206F},
    {0xFEFF, 0xFEFF},
}};

bool isInvisible(char32_t code) {
  return std::ranges::any_of(invisible, [&](const auto& range) { return code >= range.first && code <= range.second; });
}

std::string numbered(char32_t code) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string number;
  for (char32_t rest = code; rest != 0 || number.size() < 2; rest >>= 4U)
    number.insert(number.begin(), digits[rest & 0xFU]);
  return "\\u{" + number + '}';
}

}  // namespace

std::string escapedText(std::string_view original) {
  std::string text;
  while (!original.empty()) {
    // Bytes that are not UTF-8 stay: only whole characters can be judged.
    const auto character = platform::firstUtf8Character(original).value_or(platform::Utf8Character{U'?', 1});
    const std::string_view bytes = original.substr(0, character.length);
    original.remove_prefix(character.length);
    if (bytes == "\"" || bytes == "\\") {
      text += '\\';
      text += bytes;
    } else if (bytes == "\n") {
      text += "\\n";
    } else if (bytes == "\r") {
      text += "\\r";
    } else if (bytes == "\t") {
      text += "\\t";
    } else if (isInvisible(character.code)) {
      text += numbered(character.code);
    } else {
      text += bytes;
    }
  }
  return text;
}

}  // namespace quillfade
