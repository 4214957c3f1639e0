#include "Platform/Linux/Posix/DesktopNames.h"

#include <string>

#include "Platform/Linux/Posix/UserDirectories.h"

namespace platform::linux::posix {

bool isDesktop(std::string_view name) {
  const std::string names = ':' + environmentVariable("XDG_CURRENT_DESKTOP").value_or("") + ':';
  return names.contains(':' + std::string(name) + ':');
}

}  // namespace platform::linux::posix
