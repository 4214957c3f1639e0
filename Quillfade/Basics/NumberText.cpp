#include "Quillfade/Basics/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace quillfade {

std::string numberText(double value) {
  // Seventeen digits are the most that a number needs. In this range even they are written without an exponent.
  const bool isPlain = value == 0 || (std::abs(value) >= 1e-4 && std::abs(value) < 1e17);
  const auto format = isPlain ? std::chars_format::fixed : std::chars_format::scientific;
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, format).ptr;
  return {digits.data(), end};
}

}  // namespace quillfade
