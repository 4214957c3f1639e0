// What the look at a Mac found, in words. Portable; pure but for `logFinding`, which looks at a directory.
#pragma once

#include <optional>
#include <string>

#include "Platform/Examination.h"
#include "Platform/LoginItem.h"

namespace platform::mac {

// Screen Recording. The system answers for the program that started the asking one, which for a command is the
// terminal; so only the running application knows of its own.
[[nodiscard]] Finding permissionFinding(const std::optional<bool>& mayCapture);
[[nodiscard]] Finding loginItemFinding(LoginItemStatus status);
[[nodiscard]] Finding logFinding(const std::string& path);

// Where the user's defaults are kept, for people.
[[nodiscard]] std::string preferencesPath(const std::string& homeDirectory);

}  // namespace platform::mac
