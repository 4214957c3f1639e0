// Foreign text on one line of ours.
#pragma once

#include <string>
#include <string_view>

namespace quillfade {

// Control characters as escapes beginning with a backslash, quotes and backslashes behind one: the result can neither
// end a line nor a quoted text.
[[nodiscard]] std::string escapedText(std::string_view text);

}  // namespace quillfade
