// Which part of a region lies on a screen, and whether it is worth covering.
#pragma once

#include <optional>

#include "Platform/Geometry.h"
#include "Platform/Screens.h"

namespace quillfade {

// A smaller part is not covered.
inline constexpr double leastCoveredExtent = 16;

[[nodiscard]] inline bool isWorthCovering(const platform::Rect& part) {
  return part.width() >= leastCoveredExtent && part.height() >= leastCoveredExtent;
}

// The part of `region` on this screen; absent when no part is worth covering.
[[nodiscard]] inline std::optional<platform::Rect> coveredPart(const platform::Rect& region,
                                                               const platform::Screen& screen) {
  const auto part = platform::intersection(region, screen.frame);
  return part && isWorthCovering(*part) ? part : std::nullopt;
}

}  // namespace quillfade
