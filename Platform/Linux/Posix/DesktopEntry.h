// Desktop entry files: as much of the format as an autostart entry needs.
//
// Threads: pure functions. Texts are UTF-8.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace platform::linux::posix {

// A program's path as the value of `Exec`, whatever characters it has: quoted as an argument, its field codes disarmed,
// and all of that escaped as a value.
[[nodiscard]] std::string desktopExec(std::string_view program);

// The keys of the group [Desktop Entry], without localized ones; absent when the text has no such group or has lines
// that are no entries. Values stay escaped.
[[nodiscard]] std::optional<std::map<std::string, std::string>> parseDesktopEntry(std::string_view text);

}  // namespace platform::linux::posix
