// Text without leading and trailing blanks and line ends.
//
// Threads: pure function, safe on any thread. The result refers to the argument's characters.
#pragma once

#include <string_view>

namespace platform::linux::posix {

[[nodiscard]] constexpr std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace platform::linux::posix
