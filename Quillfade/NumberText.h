// Numbers as text.
#pragma once

#include <string>

namespace quillfade {

// The shortest decimal form that reads back as the same number.
[[nodiscard]] std::string numberText(double value);

}  // namespace quillfade
