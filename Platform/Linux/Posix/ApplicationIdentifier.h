// One name for the program wherever the desktop knows it: desktop entry, autostart entry, session bus, window owner.
#pragma once

namespace platform::linux::posix {

inline constexpr const char* applicationIdentifier = "org.quillfade.Quillfade";

}  // namespace platform::linux::posix
