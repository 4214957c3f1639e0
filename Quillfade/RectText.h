// The text form in which a rectangle is stored: {{x, y}, {width, height}}.
#pragma once

#include <string>
#include <string_view>

#include "Platform/Geometry.h"

namespace quillfade {

// Each number in its shortest decimal form that reads back as the same number.
[[nodiscard]] std::string rectText(const platform::Rect& rect);

// Blanks between the elements are free. Text that is not of this form, or holds a number that is not finite, reads as
// the zero rectangle.
[[nodiscard]] platform::Rect rectFromText(std::string_view text);

}  // namespace quillfade
