// Foreign text on one line of ours.
#pragma once

#include <string>
#include <string_view>

namespace quillfade {

// Control characters, and others that show as nothing or turn the text around them, as escapes beginning with a
// backslash; quotes and backslashes behind one. The result can neither end a line nor a quoted text, and it reads in
// the order in which it is written.
[[nodiscard]] std::string escapedText(std::string_view text);

}  // namespace quillfade
