// Colours as the application names them: fixed components, or a role that follows the desktop's light or dark
// appearance.
//
// Threads: plain values. A role is resolved by the adapter at the moment of drawing.
#pragma once

namespace platform {

enum class ColorRole {
  fixed,             // the components below, in device-independent RGB
  label,             // primary text
  secondaryLabel,    // secondary text
  windowBackground,  // the background of an ordinary window
};

struct Color {
  ColorRole role = ColorRole::fixed;
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;  // 0 clear, 1 opaque; below 1 it replaces a role's own alpha

  [[nodiscard]] constexpr Color withAlpha(double value) const { return {role, red, green, blue, value}; }

  friend bool operator==(const Color&, const Color&) = default;
};

namespace colors {
inline constexpr Color black{};
inline constexpr Color white{ColorRole::fixed, 1, 1, 1, 1};
inline constexpr Color clear{ColorRole::fixed, 0, 0, 0, 0};
inline constexpr Color label{ColorRole::label};
inline constexpr Color secondaryLabel{ColorRole::secondaryLabel};
inline constexpr Color windowBackground{ColorRole::windowBackground};
}  // namespace colors

}  // namespace platform
