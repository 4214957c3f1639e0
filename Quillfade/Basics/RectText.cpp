#include "Quillfade/Basics/RectText.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>

#include "Quillfade/Basics/NumberText.h"

namespace quillfade {
namespace {

bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }

std::size_t digitsAt(std::string_view text, std::size_t start) {
  std::size_t end = std::min(start, text.size());
  while (end < text.size() && isDigit(text[end])) ++end;
  return end - std::min(start, text.size());
}

// The length of the decimal number at the front, zero when there is none: an optional sign, digits with or without a
// point, and an optional exponent.
std::size_t numberLength(std::string_view text) {
  std::size_t length = text.starts_with('+') || text.starts_with('-') ? 1 : 0;
  const std::size_t whole = digitsAt(text, length);
  length += whole;
  const std::size_t fraction = text.substr(length).starts_with('.') ? digitsAt(text, length + 1) : 0;
  if (whole == 0 && fraction == 0) return 0;
  if (text.substr(length).starts_with('.')) length += 1 + fraction;
  if (!text.substr(length).starts_with('e') && !text.substr(length).starts_with('E')) return length;
  std::size_t exponent = length + 1;
  if (text.substr(exponent).starts_with('+') || text.substr(exponent).starts_with('-')) ++exponent;
  const std::size_t power = digitsAt(text, exponent);
  return power == 0 ? length : exponent + power;
}

// A stream with the classic locale reads the same on every desktop, whatever its decimal separator.
double numberIn(std::string_view text) {
  std::istringstream stream{std::string{text}};
  stream.imbue(std::locale::classic());
  double value = 0;
  stream >> value;
  // Reading also fails for numbers too small to tell from zero.
  if (stream.fail() && std::abs(value) >= 1) return std::numeric_limits<double>::infinity();
  return value;
}

}  // namespace

std::string rectText(const platform::Rect& rect) {
  return "{{" + numberText(rect.origin.x) + ", " + numberText(rect.origin.y) + "}, {" + numberText(rect.size.width) +
         ", " + numberText(rect.size.height) + "}}";
}

platform::Rect rectFromText(std::string_view text) {
  platform::Rect rect;
  for (double* wanted : {&rect.origin.x, &rect.origin.y, &rect.size.width, &rect.size.height}) {
    while (!text.empty() && numberLength(text) == 0) text.remove_prefix(1);
    const std::size_t length = numberLength(text);
    if (length > 0) *wanted = numberIn(text.substr(0, length));
    if (!std::isfinite(*wanted)) return {};
    text.remove_prefix(length);
  }
  return rect;
}

}  // namespace quillfade
