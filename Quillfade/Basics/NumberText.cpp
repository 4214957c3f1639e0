#include "Quillfade/Basics/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace quillfade {

std::string numberText(double value) {
  // Where a number of seventeen digits, which is as many as one can have, would be written without an exponent.
  const bool isPlain = value == 0 || (std::abs(value) >= 1e-4 && std::abs(value) < 1e17);
  const auto format = isPlain ? std::chars_format::fixed : std::chars_format::scientific;
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, format).ptr;
  return {digits.data(), end};
}

}  // namespace quillfade
