#include "Quillfade/Utf8.h"

#include <cstddef>
#include <cstdint>

namespace quillfade {
namespace {

// How many bytes follow this first byte; -1 for a byte that cannot begin a character.
int followers(std::uint8_t first) {
  if (first < 0x80) return 0;
  if (first >= 0xC2 && first <= 0xDF) return 1;
  if (first >= 0xE0 && first <= 0xEF) return 2;
  if (first >= 0xF0 && first <= 0xF4) return 3;
  return -1;
}

// The second byte has a narrower range after some first bytes; that is what rules out overlong forms and surrogates.
bool secondFits(std::uint8_t first, std::uint8_t second) {
  if (first == 0xE0) return second >= 0xA0;
  if (first == 0xED) return second <= 0x9F;
  if (first == 0xF0) return second >= 0x90;
  if (first == 0xF4) return second <= 0x8F;
  return true;
}

}  // namespace

bool isValidUtf8(std::string_view bytes) {
  std::size_t index = 0;
  while (index < bytes.size()) {
    const auto first = static_cast<std::uint8_t>(bytes[index]);
    const int count = followers(first);
    if (count < 0 || bytes.size() - index <= static_cast<std::size_t>(count)) return false;
    for (int offset = 1; offset <= count; ++offset) {
      const auto next = static_cast<std::uint8_t>(bytes[index + static_cast<std::size_t>(offset)]);
      if ((next & 0xC0) != 0x80 || (offset == 1 && !secondFits(first, next))) return false;
    }
    index += static_cast<std::size_t>(count) + 1;
  }
  return true;
}

}  // namespace quillfade
