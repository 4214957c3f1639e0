#include "Platform/Linux/Toolkit/DesktopProcess.h"

#include "Platform/Linux/Posix/UserDirectories.h"

namespace platform::x11 {

std::optional<std::string> DesktopProcess::environmentVariable(const std::string& name) const {
  return x11::environmentVariable(name);
}

std::string DesktopProcess::homeDirectory() const { return x11::homeDirectory(); }

}  // namespace platform::x11
