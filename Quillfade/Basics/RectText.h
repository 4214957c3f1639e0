// The text form in which a rectangle is stored: {{x, y}, {width, height}}.
#pragma once

#include <string>
#include <string_view>

#include "Platform/Geometry.h"

namespace quillfade {

[[nodiscard]] std::string rectText(const platform::Rect& rect);

// The first four decimal numbers in the text, whatever stands around them; zero for any that are missing. A number out
// of range gives the zero rectangle.
[[nodiscard]] platform::Rect rectFromText(std::string_view text);

}  // namespace quillfade
