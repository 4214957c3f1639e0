// What a command says that the locked session forbids.
#pragma once

namespace quillfade {

inline constexpr const char* sessionIsLocked = "The session is locked.";

}  // namespace quillfade
