// Where this user's files are.
//
// Threads: any. Paths are absolute, without a trailing slash.
#pragma once

#include <optional>
#include <string>

namespace platform::linux::posix {

[[nodiscard]] std::optional<std::string> environmentVariable(const std::string& name);
// $HOME if it is absolute, else what the system's user database says, else "/".
[[nodiscard]] std::string homeDirectory();
// $XDG_CONFIG_HOME if it is absolute, else ~/.config.
[[nodiscard]] std::string configurationDirectory();

// $XDG_STATE_HOME if it is absolute, else ~/.local/state.
[[nodiscard]] std::string stateDirectory();
// Whether files can be created in it.
[[nodiscard]] bool isWritableDirectory(const std::string& path);

}  // namespace platform::linux::posix
