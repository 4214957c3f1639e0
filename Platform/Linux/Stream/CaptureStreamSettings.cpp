#include "Platform/Linux/Stream/CaptureStreamSettings.h"

#include <algorithm>
#include <cmath>

namespace platform::linux::stream {

CaptureStreamSettings captureStreamSettings(const StreamConfiguration& configuration,
                                            const xcb::ScreenGeometry& display) {
  CaptureStreamSettings settings;
  // Frames show the screen pixel for pixel, so the size in pixels decides, and the source only says where.
  settings.source = xcb::capturedPixels(configuration.sourceRect, configuration.width, configuration.height, display);
  const MediaTime interval = configuration.minimumFrameInterval;
  if (interval.value > 0 && interval.timescale > 0) {
    const double seconds = static_cast<double>(interval.value) / interval.timescale;
    settings.minimumFrameInterval = std::chrono::nanoseconds(std::llround(std::min(seconds, 3600.0) * 1e9));
  }
  // `showsCursor` needs nothing: the server draws the real pointer above every window, including the one that shows the
  // frames. One painted into the frames would be a second pointer that lags behind. `queueDepth` is an upper limit, and
  // a stream has one frame out at a time. `pixelFormat` is that of the root window, to whose windows the frames are
  // copied.
  return settings;
}

std::optional<Error> faultOf(const xcb::PixelRect& source) {
  // The protocol's coordinates have 16 bits.
  constexpr std::int32_t largestExtent = 32767;
  if (source.isEmpty()) return Error{"The area to show is empty."};
  if (source.width > largestExtent || source.height > largestExtent)
    return Error{"The area to show is larger than the display server can handle."};
  return std::nullopt;
}

scene::WindowFilter filterOf(const CaptureStreamSettings& settings, const xcb::Connection& connection) {
  scene::WindowFilter filter(settings.excludedWindows, settings.ownClients, connection.resourceMask());
  if (!settings.holdBack) return filter;
  filter.holdBackFrom(settings.holdBack->fromArea);
  for (const xcb_window_t window : settings.holdBack->admitted) filter.admit(window);
  return filter;
}

CaptureStreamSettings::HoldBack holdBack(const HeldBackWindows& windows, const xcb::ScreenGeometry& display) {
  return {.fromArea = windows.fromArea * display.scale * display.scale, .admitted = windows.admitted};
}

}  // namespace platform::linux::stream
