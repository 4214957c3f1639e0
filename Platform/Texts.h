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
  // The same text in the user's language; itself when there is no translation of it.
  [[nodiscard]] virtual std::string translated(std::string_view english) const = 0;
};

}  // namespace platform
