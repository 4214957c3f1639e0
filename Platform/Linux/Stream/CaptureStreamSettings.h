// What one stream captures, as plain values.
//
// Units and axes: device pixels in root coordinates, y down.
#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Capture.h"
#include "Platform/Linux/Scene/WindowFilter.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Linux/Xcb/Coordinates.h"

namespace platform::linux::stream {

struct CaptureStreamSettings {
  std::string displayName;  // of the X server; empty: the one named by the environment
  xcb::PixelRect source;    // its size is that of the frames
  std::chrono::nanoseconds minimumFrameInterval{};
  std::vector<xcb_window_t> excludedWindows;  // top-level windows to leave out
  std::vector<std::uint32_t> ownClients;      // resource bases of our connections: their windows are left out as well
  // New windows of at least this area, in square pixels, are left out until they are admitted.
  struct HoldBack {
    double fromArea = 0;
    std::vector<xcb_window_t> admitted;
  };
  std::optional<HoldBack> holdBack;
  std::uint64_t serial = 0;                       // larger than that of every earlier stream of this process
  xcb::Connection::ErrorHandler unexpectedError;  // if empty, errors are logged
};

// The source and the pace that the configuration asks for on this display.
[[nodiscard]] CaptureStreamSettings captureStreamSettings(const StreamConfiguration& configuration,
                                                          const xcb::ScreenGeometry& display);
// The windows to leave out, as a filter.
[[nodiscard]] scene::WindowFilter filterOf(const CaptureStreamSettings& settings, const xcb::Connection& connection);
// Why nothing can be captured there, if so.
[[nodiscard]] std::optional<Error> faultOf(const xcb::PixelRect& source);
// The same in pixels of this display.
[[nodiscard]] CaptureStreamSettings::HoldBack holdBack(const HeldBackWindows& windows,
                                                       const xcb::ScreenGeometry& display);

}  // namespace platform::linux::stream
