// The demonstration: a fixed area that a start with QUILLFADE_DEMO=1 covers.
#pragma once

#include "Platform/Geometry.h"
#include "Platform/Process.h"

namespace quillfade {

inline constexpr platform::Rect demonstrationRegion{{240, 240}, {520, 340}};

// Exactly "1": nothing else counts.
[[nodiscard]] inline bool wantsDemonstration(const platform::Process& process) {
  return process.environmentVariable("QUILLFADE_DEMO") == "1";
}

}  // namespace quillfade
