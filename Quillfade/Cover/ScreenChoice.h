// Which one screen stands for a rectangle that may lie on several, or on none.
#pragma once

#include <optional>

#include "Platform/Geometry.h"
#include "Platform/Screens.h"

namespace quillfade {

// The first screen whose frame contains the rectangle's centre, or else the main screen; absent when there is neither.
[[nodiscard]] std::optional<platform::Screen> screenByCenter(const platform::Rect& rect,
                                                             const platform::Screens& screens);

}  // namespace quillfade
