// Which desktop this session is of.
//
// Threads: any.
#pragma once

#include <string_view>

namespace platform::linux::posix {

// Whether $XDG_CURRENT_DESKTOP, names separated by colons, has this one.
[[nodiscard]] bool isDesktop(std::string_view name);

}  // namespace platform::linux::posix
