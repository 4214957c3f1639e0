// How the covered area is covered.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quillfade {

enum class CoverStyle : std::int64_t {
  live = 0,   // a live copy without the annotations
  solid = 1,  // an opaque window; needs no permission
};

// In menu order.
inline constexpr std::array allCoverStyles{CoverStyle::live, CoverStyle::solid};

[[nodiscard]] constexpr std::int64_t rawValue(CoverStyle style) { return static_cast<std::int64_t>(style); }

[[nodiscard]] constexpr std::string_view title(CoverStyle style) {
  return style == CoverStyle::live ? "Live (strip annotations)" : "Solid cover";
}

[[nodiscard]] constexpr std::optional<CoverStyle> coverStyle(std::int64_t rawValue) {
  switch (rawValue) {
    case 0:
      return CoverStyle::live;
    case 1:
      return CoverStyle::solid;
    default:
      return std::nullopt;
  }
}

}  // namespace quillfade
