// The process, its bundle and its user.
//
// Threads: any.
#pragma once

#include "Platform/Process.h"

namespace platform::mac::foundation {

class Process final : public platform::Process {
 public:
  [[nodiscard]] std::optional<std::string> environmentVariable(const std::string& name) const override;
  [[nodiscard]] std::optional<std::string> bundleIdentifier() const override;
  [[nodiscard]] std::string homeDirectory() const override;
};

}  // namespace platform::mac::foundation
