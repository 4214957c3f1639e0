#include "Quillfade/NumberText.h"

#include <array>
#include <charconv>

namespace quillfade {

std::string numberText(double value) {
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  return {digits.data(), end};
}

}  // namespace quillfade
