// What the adapter knows of one top-level window, as plain values.
//
// When a window manager has put the program's window into a frame, the frame is the top-level (with the place, the
// stacking and the pixels), and the program's window inside is the client (with the names, the types and the states).
// Without a frame both are the same window.
// Units and axes: device pixels of the root window. Threads: plain values. Strings are raw bytes as the window carries
// them, in whatever encoding.
#pragma once

#include <string>
#include <vector>

#include "Platform/Linux/Xcb/Coordinates.h"

namespace platform::linux::scene {

// The window types of the desktop conventions; types of private conventions are dropped on reading.
enum class WindowType {
  desktop,
  dock,
  toolbar,
  menu,
  dropdownMenu,
  popupMenu,
  combo,
  tooltip,
  dragAndDrop,
  notification,
  splash,
  utility,
  dialog,
  normal,
};

struct WindowState {
  bool isAbove = false;
  bool isBelow = false;
  bool isFullScreen = false;
  bool isMaximized = false;  // in both directions
  friend bool operator==(const WindowState&, const WindowState&) = default;
};

struct WindowProperties {
  // Of the client.
  std::string instanceName{};
  std::string className{};
  std::string processName{};        // of the process that made the client; empty when unneeded or unknown
  std::vector<WindowType> types{};  // best match first
  WindowState state{};
  bool hasFixedSize = false;   // the program allows one size only
  bool isShaped = false;       // has a bounding shape of its own
  bool hasEmptyInput = false;  // client or top-level: clicks pass through
  // Of the top-level.
  xcb::PixelRect frame{};    // with its border
  bool isManaged = false;    // a window manager looks after it
  bool isDecorated = false;  // by a window manager: title bar or edges
  bool hasAlpha = false;
  bool isBeneathOrdinaryWindows = false;  // there are managed windows, and all that overlap it lie above it
  bool isLowestOfDesktop = false;         // nothing lies beneath it, and a managed window above it
  bool isOwn = false;                     // belongs to this program
  bool wasOverlay = false;                // was judged an overlay since it was mapped
};

}  // namespace platform::linux::scene
