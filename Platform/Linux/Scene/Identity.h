// Who owns a window and how far in front it belongs: what the rules about overlays are told of a window.
//
// Owner: conferencing programs are recognised by their whole names and get the identifiers that they have on every
// system. All others go by their windows' class, unless it merely contains such a name.
// The pointer decides: a see-through window over a whole monitor is an overlay when clicks go through it, and stays one
// when it later takes them to draw. One that always takes them must belong to a known annotation program, or be kept
// above the others by a window manager; otherwise it may be anything, even a lock screen.
// Layer: 0 for ordinary windows, full-screen ones included; larger is further in front. Only sheets that lie over a
// whole monitor to be drawn on reach `overlay`. Small windows, menus, panels, notifications, drag icons and whatever
// opaque window hides a locked session never do.
// Threads: pure functions of plain values.
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
inline constexpr std::int64_t unmanaged = 101;  // menus, tooltips, drag icons: anything that no window manager places
inline constexpr std::int64_t overlay = 500;
inline constexpr std::int64_t own = 1000;
}  // namespace layers

// Valid UTF-8; absent when nothing names the owner, or only a name that would be mistaken for a conferencing program's.
[[nodiscard]] std::optional<std::string> ownerIdentifier(const WindowProperties& window);

[[nodiscard]] std::int64_t windowLayer(const WindowProperties& window, std::span<const xcb::PixelRect> monitors);

// Whether the rectangle covers at least nine tenths of one of the monitors. Overlays stay a row short of the screen, or
// leave room for a panel, so that they are not taken for full-screen windows.
[[nodiscard]] bool coversMonitor(const xcb::PixelRect& frame, std::span<const xcb::PixelRect> monitors);

// Whether the window hides a whole monitor from everybody, as a lock screen does: not managed, opaque or at least
// taking all input, with no ordinary window above it. Nothing may be shown above such a window, unless somebody who
// knows says what it is.
[[nodiscard]] bool isScreenLocker(const WindowProperties& window, std::span<const xcb::PixelRect> monitors);

// What the window is if only the pointer keeps it from being an overlay, or if it looks like a lock screen. It is
// certainly a locker when it is opaque or belongs to a known locker.
[[nodiscard]] ScreenSheet screenSheet(const WindowProperties& window, std::span<const xcb::PixelRect> monitors);

// Bytes that are not UTF-8 are read as Latin-1, one by one.
[[nodiscard]] std::string validUtf8(std::string_view bytes);

}  // namespace platform::linux::scene
