// The system's own reasons as sentences.
//
// Threads: any.
#pragma once

#include <string>
#include <string_view>

#include "Platform/Error.h"

namespace platform::linux::posix {

// "<what> <path>: <reason>." where the reason is what the system says about this error number.
[[nodiscard]] Error systemError(std::string_view what, std::string_view path, int number);

}  // namespace platform::linux::posix
