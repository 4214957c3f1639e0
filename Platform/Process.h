// What a process knows about itself and its surroundings.
//
// Threads: any. Strings are UTF-8 where the system's are.
#pragma once

#include <optional>
#include <string>

namespace platform {

class Process {
 public:
  virtual ~Process() = default;
  [[nodiscard]] virtual std::optional<std::string> environmentVariable(const std::string& name) const = 0;
  // The reverse-DNS identifier of this application; absent when it runs without one. Read afresh on every call.
  [[nodiscard]] virtual std::optional<std::string> bundleIdentifier() const = 0;
  // An absolute path without a trailing slash.
  [[nodiscard]] virtual std::string homeDirectory() const = 0;
};

}  // namespace platform
