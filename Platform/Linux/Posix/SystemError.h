// The system's error numbers as sentences.
//
// Threads: any.
#pragma once

#include <string>
#include <string_view>

#include "Platform/Error.h"

namespace platform::linux::posix {

// "<what> <path>: <reason>." with the system's text for this error number as the reason.
[[nodiscard]] Error systemError(std::string_view what, std::string_view path, int number);

}  // namespace platform::linux::posix
