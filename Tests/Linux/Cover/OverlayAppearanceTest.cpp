#include "Tests/Linux/Cover/OverlayWindowFixture.h"

namespace platform::linux::cover {
namespace {

TEST(OverlayAppearance, FollowsTheContentInDevicePixels) {
  views::OverlayContent content;
  content.pictureLayer = Rect{{0, 0}, {200, 100}};
  content.label = views::LabelContent{"Text", {{15, FontWeight::medium}, colors::white.withAlpha(0.65)}};
  content.border = views::BorderContent{1, colors::black.withAlpha(0.16)};
  const OverlayAppearance appearance = appearanceOf(content, colors::black, 150, 1.5);
  EXPECT_EQ(appearance.background, 0xFF000000U);
  EXPECT_EQ(appearance.picture, (xcb::PixelRect{0, 0, 300, 150}));
  EXPECT_DOUBLE_EQ(appearance.label->font.size, 22.5);
  EXPECT_EQ(appearance.label->color, 0xA6FFFFFFU);
  EXPECT_EQ(appearance.border, (stream::BorderAppearance{2, 0x29000000}));
}

TEST(OverlayAppearance, APartOfTheWindowKeepsItsPlaceFromTheBottom) {
  views::OverlayContent content;
  content.background = colors::white;
  content.pictureLayer = Rect{{10, 20}, {30, 40}};
  content.border = views::BorderContent{0.1, colors::black};
  const OverlayAppearance appearance = appearanceOf(content, colors::black, 100, 1);
  EXPECT_EQ(appearance.background, 0xFFFFFFFFU);
  EXPECT_EQ(appearance.picture, (xcb::PixelRect{10, 40, 30, 40}));
  EXPECT_EQ(appearance.border->width, 1);
}

}  // namespace
}  // namespace platform::linux::cover
