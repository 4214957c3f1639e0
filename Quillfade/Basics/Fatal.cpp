#include "Quillfade/Basics/Fatal.h"

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <limits>

namespace quillfade {

void fatalError(std::string_view message) {
  std::cerr << "quillfade: fatal error: " << message << std::endl;
  std::abort();
}

bool fitsWholeNumber(double value) {
  // 2^63 is the first value beyond the range; -2^63 still fits.
  constexpr double limit = 9223372036854775808.0;
  const double whole = std::trunc(value);
  return whole >= -limit && whole < limit;
}

std::int64_t wholeNumber(double value) {
  if (!fitsWholeNumber(value)) fatalError("a size or position is not representable as a whole number");
  return static_cast<std::int64_t>(std::trunc(value));
}

std::int64_t roundedNumber(double value) { return wholeNumber(std::round(value)); }

void countUp(std::int64_t& counter) {
  if (counter == std::numeric_limits<std::int64_t>::max()) fatalError("a counter overflowed");
  ++counter;
}

}  // namespace quillfade
