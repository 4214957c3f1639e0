// Conditions that cannot happen end the process: going on would show the audience something undefined.
#pragma once

#include <cstdint>
#include <string_view>

namespace quillfade {

// Writes one line to standard error and aborts.
[[noreturn]] void fatalError(std::string_view message);

// Whether the number without its fraction is finite and fits into 64 bits.
[[nodiscard]] bool fitsWholeNumber(double value);

// The number without its fraction (toward zero). Fatal when it does not fit.
[[nodiscard]] std::int64_t wholeNumber(double value);

// The nearest whole number, halves away from zero. Fatal when it is not finite or does not fit.
[[nodiscard]] std::int64_t roundedNumber(double value);

// Adds one. Fatal when that does not fit.
void countUp(std::int64_t& counter);

}  // namespace quillfade
