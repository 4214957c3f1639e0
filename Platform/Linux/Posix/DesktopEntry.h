// Desktop entry files: as much of the format as an autostart entry needs.
//
// Threads: pure functions. Text is UTF-8.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace platform::linux::posix {

// A program's path as the value of `Exec`, whatever characters it contains: quoted as an argument, with field codes
// neutralised, then escaped as a value.
[[nodiscard]] std::string desktopExec(std::string_view program);

// The keys of the group [Desktop Entry], without localised ones; absent when the text has no such group or contains
// malformed lines. Values stay escaped.
[[nodiscard]] std::optional<std::map<std::string, std::string>> parseDesktopEntry(std::string_view text);

}  // namespace platform::linux::posix
