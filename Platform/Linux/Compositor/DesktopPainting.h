// How a compositing manager paints what lies beneath all windows: a plain colour of its own where no wallpaper is set,
// and something else again beyond the edges of a wallpaper smaller than the screen.
//
// Nothing announces this. For each manager it is known by name and version, from observation.
// Threads: plain values. Failure: an unknown manager paints black and repeats the wallpaper.
#pragma once

#include <xcb/render.h>

#include <cstdint>
#include <string_view>

namespace platform::linux::compositor {

struct DesktopPainting {
  std::uint16_t grey = 0;                                // the plain colour: from 0 for black to 0xffff for white
  std::uint32_t beyondEdges = XCB_RENDER_REPEAT_NORMAL;  // of the wallpaper; black there without a repeat
};

// Judges by the manager's window: WM_NAME, and COMPTON_VERSION, in which picom still uses an ancestor's name.
[[nodiscard]] DesktopPainting desktopPainting(std::string_view name, std::string_view version);

}  // namespace platform::linux::compositor
