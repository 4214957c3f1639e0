// Whose a window is and how far in front it belongs: what the rules about overlays are told of a window.
//
// Owner: conferencing programs, known by their whole names, are given the identifiers under which they are known on
// every system; all others go by the class that their windows carry, unless it merely holds such a name.
// The pointer decides: a see-through window over a whole monitor is an overlay when clicks go through it, and stays one
// when it takes them afterwards, to draw. One that always takes them must be of a known annotation program, or kept
// above the others by a window manager; else it may be anything, a lock screen, too.
// Layer: 0 for ordinary windows, full-screen ones included; larger is further in front; `overlay` and more only for
// sheets that lie over a whole monitor to be drawn on. Small windows, menus, panels, notifications, drag icons and
// whatever opaque window hides a locked session never reach it. Threads: pure functions of plain values.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Platform/Capture.h"
#include "Platform/Linux/Scene/WindowProperties.h"
#include "Platform/Linux/Xcb/Coordinates.h"

namespace platform::linux::scene {

namespace layers {
inline constexpr std::int64_t below = -1;  // desktops, and windows kept below the ordinary ones
inline constexpr std::int64_t ordinary = 0;
inline constexpr std::int64_t floating = 3;
inline constexpr std::int64_t dock = 20;
inline constexpr std::int64_t notification = 25;
inline constexpr std::int64_t unmanaged = 101;  // menus, tooltips, drag icons, anything that no window manager places
inline constexpr std::int64_t overlay = 500;
inline constexpr std::int64_t own = 1000;
}  // namespace layers

// Valid UTF-8; absent when nothing names the owner, or only a name that would be mistaken for a conferencing program's.
[[nodiscard]] std::optional<std::string> ownerIdentifier(const WindowProperties& window);

[[nodiscard]] std::int64_t windowLayer(const WindowProperties& window, std::span<const xcb::PixelRect> monitors);

// Whether the rectangle covers at least nine tenths of one of the monitors. Overlays stay a row short of the screen, or
// leave room for a panel, so that nothing takes them for full-screen windows.
[[nodiscard]] bool coversMonitor(const xcb::PixelRect& frame, std::span<const xcb::PixelRect> monitors);

// Whether the window hides the whole of a monitor from everybody, as the lock screen does: not managed, opaque or at
// least taking all input, with nothing ordinary above it. Nothing may be shown above such a window, unless somebody who
// knows says what it is.
[[nodiscard]] bool isScreenLocker(const WindowProperties& window, std::span<const xcb::PixelRect> monitors);

// What a window is that is no overlay because of the pointer, or looks like a lock screen. It is a locker for certain
// when one cannot see through it, or when it is of a known program of that kind.
[[nodiscard]] ScreenSheet screenSheet(const WindowProperties& window, std::span<const xcb::PixelRect> monitors);

// Bytes that are no UTF-8 are read as Latin-1, one by one.
[[nodiscard]] std::string validUtf8(std::string_view bytes);

}  // namespace platform::linux::scene
