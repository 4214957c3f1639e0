// What an overlay window shows, in its own pixels: the plain description that its painter works from.
//
// Units and axes: device pixels, origin at the window's top-left corner, y down. Threads: plain values; `appearanceOf`
// on the main thread, since it asks the desktop for its colours.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Linux/Stream/BorderAppearance.h"
#include "Platform/Linux/Views/OverlayContent.h"
#include "Platform/Linux/Xcb/Coordinates.h"

namespace platform::linux::cover {

struct LabelAppearance {
  std::string text;
  Font font;  // size in device pixels
  stream::Argb color = 0xFFFFFFFF;
  friend bool operator==(const LabelAppearance&, const LabelAppearance&) = default;
};

// Back to front.
struct OverlayAppearance {
  stream::Argb background = 0xFF000000;            // opaque whatever its alpha says
  std::optional<xcb::PixelRect> picture;           // where live frames go, stretched to fill it
  std::optional<LabelAppearance> label;            // centred in the window
  std::optional<stream::BorderAppearance> border;  // inside the window's edges
  friend bool operator==(const OverlayAppearance&, const OverlayAppearance&) = default;
};

// `windowHeight` in pixels. Roles become the desktop's current colours. Content without a background of its own leaves
// `windowBackground`. A border is at least one pixel thick.
[[nodiscard]] OverlayAppearance appearanceOf(const views::OverlayContent& content, const Color& windowBackground,
                                             std::int32_t windowHeight, double scale);

}  // namespace platform::linux::cover
