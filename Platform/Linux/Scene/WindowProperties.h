// What the adapter knows of one top-level window, as plain values.
//
// When a window manager put the program's window into a frame, the frame is the top-level (it has the place, the
// stacking and the pixels) and the program's window inside is the client (it has the names, the types and the states).
// Without a frame both are the same window. Units and axes: device pixels of the root window. Threads: plain values.
// Strings are raw bytes as the window carries them, in whatever encoding.
#pragma once

#include <string>
#include <vector>

#include "Platform/Linux/Xcb/Coordinates.h"

namespace platform::linux::scene {

// The window types that the desktop conventions name; types of private conventions are left out when they are read.
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
  std::string processName{};        // of the process that made the client; empty when it is not needed or not known
  std::vector<WindowType> types{};  // most fitting first
  WindowState state{};
  bool hasFixedSize = false;   // the program allows one size only
  bool isShaped = false;       // has a bounding shape of its own
  bool hasEmptyInput = false;  // client or top-level: clicks pass through
  // Of the top-level.
  xcb::PixelRect frame{};    // with its border
  bool isManaged = false;    // a window manager looks after it
  bool isDecorated = false;  // by a window manager: title bar or edges
  bool hasAlpha = false;
  bool isBeneathOrdinaryWindows = false;  // there are managed windows, and all that meet it lie above it
  bool isLowestOfDesktop = false;         // beneath it is nothing, and above it a managed window
  bool isOwn = false;                     // belongs to this program
  bool wasOverlay = false;                // was judged to be one since it came to the screen
};

}  // namespace platform::linux::scene
