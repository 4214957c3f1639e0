// Lower case for ASCII letters; any other byte stays as it is, whatever the locale.
#pragma once

namespace platform {

[[nodiscard]] constexpr char asciiLowerCase(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace platform
