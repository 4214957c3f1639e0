#include "Platform/Linux/X11/CaptureStreamSettings.h"

#include <algorithm>
#include <cmath>

namespace platform::x11 {

namespace {

std::int32_t pixelsOf(double points, double scale) {
  constexpr double farthestPixel = 1 << 20;
  const double pixels = std::round(points * scale);
  return std::isnan(pixels) ? 0 : static_cast<std::int32_t>(std::clamp(pixels, -farthestPixel, farthestPixel));
}

std::int32_t extentOf(std::int64_t pixels) {
  constexpr std::int64_t largest = 1 << 20;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(pixels, 0, largest));
}

}  // namespace

CaptureStreamSettings captureStreamSettings(const StreamConfiguration& configuration, const ScreenGeometry& display) {
  CaptureStreamSettings settings;
  // Frames show the screen pixel by pixel, so the size in pixels rules and the source only says where.
  settings.source = {display.pixels.x + pixelsOf(configuration.sourceRect.x, display.scale),
                     display.pixels.y + pixelsOf(configuration.sourceRect.y, display.scale),
                     extentOf(configuration.width), extentOf(configuration.height)};
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

}  // namespace platform::x11
