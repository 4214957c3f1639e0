#include "Platform/Linux/Toolkit/DesktopProcess.h"

#include "Platform/Linux/Posix/UserDirectories.h"

namespace platform::linux::toolkit {

std::optional<std::string> DesktopProcess::environmentVariable(const std::string& name) const {
  return posix::environmentVariable(name);
}

std::string DesktopProcess::homeDirectory() const { return posix::homeDirectory(); }

}  // namespace platform::linux::toolkit
