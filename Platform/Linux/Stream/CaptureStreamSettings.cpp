#include "Platform/Linux/Stream/CaptureStreamSettings.h"

#include <algorithm>
#include <cmath>

namespace platform::linux::stream {

CaptureStreamSettings captureStreamSettings(const StreamConfiguration& configuration,
                                            const xcb::ScreenGeometry& display) {
  CaptureStreamSettings settings;
  // Frames show the screen pixel by pixel, so the size in pixels rules and the source only says where.
  settings.source = xcb::capturedPixels(configuration.sourceRect, configuration.width, configuration.height, display);
  const MediaTime interval = configuration.minimumFrameInterval;
  if (interval.value > 0 && interval.timescale > 0) {
    const double seconds = static_cast<double>(interval.value) / interval.timescale;
    settings.minimumFrameInterval = std::chrono::nanoseconds(std::llround(std::min(seconds, 3600.0) * 1e9));
  }
  // `showsCursor` needs nothing: the server draws the real pointer above every window, so also above the one that shows
  // the frames. One painted into them would be a second pointer that lags behind. `queueDepth` is an upper limit, and a
  // stream has one frame under way. `pixelFormat` is that of the root window, whose windows the frames are copied to.
  return settings;
}

CaptureStreamSettings::HoldBack holdBack(const HeldBackWindows& windows, const xcb::ScreenGeometry& display) {
  return {.fromArea = windows.fromArea * display.scale * display.scale, .admitted = windows.admitted};
}

}  // namespace platform::linux::stream
