#include "Tests/Linux/Stream/CaptureStreamFixture.h"

namespace platform::linux::stream {
namespace {

TEST(CaptureStreamSettings, TheSourceIsPlacedByScaleAndSizedByTheConfiguration) {
  StreamConfiguration configuration;
  configuration.sourceRect = {100, 400, 100.25, 50.25};
  configuration.width = 201;
  configuration.height = 101;
  configuration.minimumFrameInterval = {1, 30};
  const xcb::ScreenGeometry display{.pixels = {-2880, 50, 2880, 1800}, .scale = 2, .points = {}};
  const CaptureStreamSettings settings = captureStreamSettings(configuration, display);
  EXPECT_EQ(settings.source, (xcb::PixelRect{-2680, 850, 201, 101}));
  EXPECT_EQ(settings.minimumFrameInterval, 33'333'333ns);
}

TEST(CaptureStreamSettings, NonsenseIsKeptWithinBounds) {
  StreamConfiguration configuration;
  configuration.sourceRect = {1e300, -1e300, 1, 1};
  configuration.width = -5;
  configuration.height = std::int64_t{1} << 62;
  configuration.minimumFrameInterval = {1, 0};
  const CaptureStreamSettings settings = captureStreamSettings(configuration, {});
  EXPECT_EQ(settings.source, (xcb::PixelRect{1 << 29, -(1 << 29), 0, 1 << 29}));
  EXPECT_EQ(settings.minimumFrameInterval, 0ns);
}

}  // namespace
}  // namespace platform::linux::stream
