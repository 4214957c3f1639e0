// Numbers as text.
#pragma once

#include <string>

namespace quillfade {

// The fewest digits that read back as the same number, with an exponent only below 0.0001 and from 10^17 on.
[[nodiscard]] std::string numberText(double value);

}  // namespace quillfade
