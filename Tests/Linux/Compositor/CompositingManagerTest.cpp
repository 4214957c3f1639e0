// The compositor beside a real compositing manager.

#include "Tests/Linux/Compositor/CompositorFixture.h"

namespace platform::linux::compositor {
namespace {

TEST_F(CompositorTest, IsRightUnderACompositingManagerThatComesAndGoes) {
  fillTheScreen();
  const auto drawn = makeChecks({.frame = {200, 150, 90, 90}, .depth = 32}, 0x60603010, 0xa0105040);
  client.sync();
  Composition composition(server.display(), wholeScreen);
  composition.update();
  const Picture without = composition.picture();
  EXPECT_EQ(without.differences(client.screenshot(wholeScreen)), 0U);
  {
    support::CompositingManager manager(server.display());
    expectPictureBecomesTheScreen(composition);
    EXPECT_NE(composition.picture().differences(without), 0U) << "windows with alpha look the same as without";
    client.move(drawn, 120, 110);
    client.sync();
    expectPictureBecomesTheScreen(composition);
    manager.stop();
  }
  expectPictureBecomesTheScreen(composition);
  client.move(drawn, 130, 60);
  client.sync();
  expectPictureBecomesTheScreen(composition);
}

TEST_F(CompositorTest, DrawingInAnUncoveredTranslucentWindowIsBlendedUnderACompositingManager) {
  const support::CompositingManager manager(server.display());
  const auto window = makeChecks({.frame = {50, 40, 120, 90}, .depth = 32}, 0x60603010, 0xa0105040);
  client.sync();
  Composition composition(server.display(), wholeScreen);
  composition.needNotTell();
  expectPictureBecomesTheScreen(composition);
  client.fill(window, {20, 20, 50, 40}, 0x70500020);
  client.sync();
  expectPictureBecomesTheScreen(composition);
}

TEST_F(CompositorTest, PaintsTheWallpaperOfACompositingManager) {
  // Smaller than the screen, and not of one colour at its edges.
  const xcb_pixmap_t wallpaper = xcb_generate_id(client.connection());
  xcb_create_pixmap(client.connection(), 24, wallpaper, client.root(), 300, 40);
  client.fill(wallpaper, {0, 0, 300, 40}, 0x556677);
  client.fill(wallpaper, {230, 7, 22, 19}, 0xccaa33);
  client.fill(wallpaper, {290, 26, 10, 5}, 0x33ccaa);
  client.setNumbers(client.root(), "_XROOTPMAP_ID", "PIXMAP", {wallpaper});
  const support::CompositingManager manager(server.display());
  fillTheScreen();
  constexpr xcb::PixelRect part{31, 17, 350, 260};
  Composition composition(server.display(), part);
  expectPictureBecomesTheScreen(composition, part);
  EXPECT_GT(composition.picture().count(0xccaa33), 0U);
}

TEST_F(CompositorTest, AWindowThatIsLeftOutShowsWhatIsBeneathUnderACompositingManager) {
  const support::CompositingManager manager(server.display());
  fillTheScreen();
  const auto overlay = makeChecks({.frame = {0, 0, 400, 299}, .depth = 32}, 0xc0c00000, 0x40004000);
  client.sync();
  Composition composition(server.display(), wholeScreen, {overlay});
  composition.update();
  client.unmap(overlay);
  client.sync();
  EXPECT_TRUE(support::waitUntil([&] { return composition.picture() == client.screenshot(wholeScreen); }));
}

}  // namespace
}  // namespace platform::linux::compositor
