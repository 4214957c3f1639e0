#include "Quillfade/EscapedText.h"

namespace quillfade {

std::string escapedText(std::string_view original) {
  constexpr std::string_view hexadecimal = "0123456789ABCDEF";
  std::string text;
  for (const char character : original) {
    const auto code = static_cast<unsigned char>(character);
    if (character == '"' || character == '\\') {
      text += '\\';
      text += character;
    } else if (character == '\n') {
      text += "\\n";
    } else if (character == '\r') {
      text += "\\r";
    } else if (character == '\t') {
      text += "\\t";
    } else if (code < 0x20 || code == 0x7F) {
      text += "\\u{";
      text += hexadecimal[code >> 4];
      text += hexadecimal[code & 0xF];
      text += '}';
    } else {
      text += character;
    }
  }
  return text;
}

}  // namespace quillfade
