// How a compositing manager paints what lies beneath all windows: its own plain colour where nobody has set a
// wallpaper, and something else again beyond the edges of a wallpaper that is smaller than the screen.
//
// Nothing announces it. It is known of each by its name and version, from looking at what it shows.
// Threads: plain values.
// Failure: one that is not known paints black, and repeats the wallpaper.
#pragma once

#include <xcb/render.h>

#include <cstdint>
#include <string_view>

namespace platform::linux::compositor {

struct DesktopPainting {
  std::uint16_t grey = 0;                                // the plain colour: from 0 for black to 0xffff for white
  std::uint32_t beyondEdges = XCB_RENDER_REPEAT_NORMAL;  // of the wallpaper; without a repeat it is black there
};

// By what its window says: WM_NAME, and COMPTON_VERSION, in which picom still names an ancestor.
[[nodiscard]] DesktopPainting desktopPainting(std::string_view name, std::string_view version);

}  // namespace platform::linux::compositor
