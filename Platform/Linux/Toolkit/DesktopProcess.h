// This process, as it sees itself.
#pragma once

#include "Platform/Linux/Posix/ApplicationIdentifier.h"
#include "Platform/Process.h"

namespace platform::linux::toolkit {

class DesktopProcess : public Process {
 public:
  [[nodiscard]] std::optional<std::string> environmentVariable(const std::string& name) const override;
  [[nodiscard]] std::optional<std::string> bundleIdentifier() const override { return posix::applicationIdentifier; }
  [[nodiscard]] std::string homeDirectory() const override;
};

}  // namespace platform::linux::toolkit
