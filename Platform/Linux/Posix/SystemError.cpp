#include "Platform/Linux/Posix/SystemError.h"

#include <system_error>

namespace platform::linux::posix {

Error systemError(std::string_view what, std::string_view path, int number) {
  std::string text(what);
  text.append(" ").append(path).append(": ").append(std::generic_category().message(number)).append(".");
  return {std::move(text)};
}

}  // namespace platform::linux::posix
