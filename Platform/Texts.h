// The application's texts in the user's language.
//
// Threads: main thread only. Texts are UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace platform {

class Texts {
 public:
  virtual ~Texts() = default;
  // The text in the user's language, or the text itself when there is no translation.
  [[nodiscard]] virtual std::string translated(std::string_view english) const = 0;
};

}  // namespace platform
