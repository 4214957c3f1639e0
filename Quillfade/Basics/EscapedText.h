// Makes foreign text safe to print on one line.
#pragma once

#include <string>
#include <string_view>

namespace quillfade {

// Writes control characters, and others that are invisible or change the direction of the text, as escapes with a
// backslash, and puts a backslash before quotes and backslashes. The result cannot end a line or a quoted text, and it
// reads in the order it is written.
[[nodiscard]] std::string escapedText(std::string_view text);

}  // namespace quillfade
