#include "Quillfade/Basics/JsonText.h"

namespace quillfade {

std::string jsonText(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string result = "\"";
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20) {
      result += R"(\u00)";
      result += digits[byte >> 4U];
      result += digits[byte & 0xFU];
      continue;
    }
    if (character == '"' || character == '\\') result += '\\';
    result += character;
  }
  return result + '"';
}

}  // namespace quillfade
