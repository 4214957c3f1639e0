// The live cover on screens with more than one pixel per point.

#include "Tests/EndToEnd/CoveredDesktop.h"

namespace endtoend {
namespace {

struct Scale {
  std::string factor;
  std::string region;  // in points
  PixelRect pixels;    // the same on the screen
};

std::string settingsWith(const std::string& region) {
  return R"({"enabled": true, "outline": false, "region": ")" + region + "\"}";
}

PixelRect grown(const PixelRect& rect, int by) {
  return {rect.x - by, rect.y - by, rect.width + 2 * by, rect.height + 2 * by};
}

class ScaledCover : public CoveredDesktop, public testing::WithParamInterface<Scale> {};

TEST_P(ScaledCover, EveryPixelOfTheAreaIsShownInItsPlace) {
  const auto& [factor, region, pixels] = GetParam();
  const Picture clean = client_.screenshot();
  drawInk();
  const Picture inked = client_.screenshot();
  auto& quillfade =
      cover({.demonstration = false, .settings = settingsWith(region), .environment = {{"QT_SCALE_FACTOR", factor}}});
  // An edge between two pixels may fall on either.
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen.differences(clean, grown(pixels, -1)) == 0; }));
  const Picture covered = client_.screenshot();
  EXPECT_EQ(covered.differences(inked), covered.differences(inked, grown(pixels, 1)));

  const auto window = client_.createWindow({.frame = {401, 303, 77, 55}, .color = 0xff336699});
  client_.sync();
  EXPECT_TRUE(shows([](const Picture& screen) {
    return screen.count(0x336699) == 77 * 55 && screen.count(0x336699, {401, 303, 77, 55}) == 77 * 55;
  }));
  client_.destroy(window);
  client_.sync();
  EXPECT_TRUE(quillfade.process().isRunning());
}

INSTANTIATE_TEST_SUITE_P(Scales, ScaledCover,
                         testing::Values(Scale{"1.25", "{{160, 160}, {416, 272}}", {200, 260, 520, 340}},
                                         Scale{"1.5", "{{160, 160}, {348, 228}}", {240, 218, 522, 342}},
                                         Scale{"1.75", "{{101, 99}, {333.5, 201.25}}", {177, 275, 583, 352}},
                                         Scale{"2", "{{120, 120}, {260, 170}}", area}));

using ScaledScreens = CoveredDesktop;

TEST_F(ScaledScreens, OfDifferentScaleEachShowTheirPart) {
  const Picture clean = client_.screenshot();
  // The drawing program only draws on the first of two screens.
  drawInk();
  const Picture inked = client_.screenshot();
  splitIntoTwoScreens();
  cover({.demonstration = false,
         .settings = settingsWith("{{540, 350}, {300, 200}}"),
         .environment = {{"QT_SCREEN_SCALE_FACTORS", "L=1;R=2"}}});
  constexpr PixelRect left{540, 250, 100, 200};
  constexpr PixelRect right{640, 500, 400, 300};  // the screens' top edges are level, their bottom edges are not
  ASSERT_GT(ink(inked, left), 0U);
  ASSERT_GT(ink(inked, right), 0U);
  EXPECT_TRUE(shows([&](const Picture& screen) {
    return screen.differences(clean, left) == 0 && screen.differences(clean, right) == 0;
  }));
  const Picture covered = client_.screenshot();
  EXPECT_EQ(covered.differences(inked), covered.differences(inked, left) + covered.differences(inked, right));
}

}  // namespace
}  // namespace endtoend
