// The compositor against a real X server: what it paints must match, pixel by pixel, what the screen shows without the
// windows that are left out.
#include "Platform/Linux/Compositor/Compositor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <optional>
#include <thread>
#include <vector>

#include "Platform/Linux/Scene/Redirection.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Linux/Scene/WindowStorm.h"
#include "Tests/Support/Desktop.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::compositor {
namespace {

using support::Picture;
using ::testing::ElementsAre;

constexpr xcb::PixelRect wholeScreen{0, 0, 400, 300};

class CompositorTest : public ::testing::Test {
 protected:
  CompositorTest() {
    scene::redirectSubwindows(*keeper);
    EXPECT_TRUE(keeper->synchronize(10'000));
    client.setBackgroundChecks(client.root(), 7, 0x204060, 0x305070);
    client.sync();
  }

  xcb_window_t makeChecks(const support::WindowOptions& options, std::uint32_t first, std::uint32_t second) {
    const xcb_window_t window = client.createWindow(options);
    client.setBackgroundChecks(window, 5, first, second);
    return window;
  }

  // Opaque, bordered, shaped, partly off-screen, and with alpha.
  void fillTheScreen() {
    makeChecks({.frame = {20, 30, 120, 90}}, 0xff0000, 0xff8000);
    makeChecks({.frame = {100, 60, 80, 70}, .border = 4, .borderColor = 0xffffff}, 0x00ff00, 0x008000);
    const auto shaped =
        makeChecks({.frame = {150, 40, 90, 90}, .border = 3, .borderColor = 0xabcdef}, 0x0000ff, 0x8080ff);
    const std::array<xcb_rectangle_t, 3> parts{{{-3, -3, 20, 60}, {30, 30, 40, 40}, {60, 60, 200, 200}}};
    client.setBoundingShape(shaped, parts);
    makeChecks({.frame = {-30, -20, 90, 80}}, 0x111111, 0xeeeeee);
    makeChecks({.frame = {350, 250, 90, 80}, .border = 2, .borderColor = 0x777777}, 0x123456, 0x654321);
    makeChecks({.frame = {60, 100, 200, 120}, .depth = 32}, 0x80402010, 0x40101040);
    makeChecks({.frame = {90, 130, 100, 120}, .depth = 32}, 0xff00ff00, 0x00000000);
    client.createWindow({.frame = {0, 0, 400, 300}, .inputOnly = true});
    client.createWindow({.frame = {10, 10, 300, 200}, .mapped = false});
    client.sync();
  }

  // What the screen shows without these windows.
  Picture screenWithout(const std::vector<xcb_window_t>& windows, const xcb::PixelRect& part = wholeScreen) {
    for (const xcb_window_t window : windows) client.unmap(window);
    client.sync();
    return client.screenshot(part);
  }

  // A compositing manager paints a moment later.
  void expectPictureBecomesTheScreen(Composition& composition, const xcb::PixelRect& part = wholeScreen) {
    EXPECT_TRUE(support::waitUntil([&] {
      composition.update();
      return composition.picture() == client.screenshot(part);
    })) << composition.picture().differences(client.screenshot(part))
        << " pixels differ";
  }

  support::XServer server{{.width = 400, .height = 300, .depth = 24, .arguments = {}}};
  support::XClient client{server.display()};
  // Stands in for the process's main connection, which lives as long as the process.
  std::unique_ptr<xcb::Connection> keeper = connectTo(server.display());
};

TEST_F(CompositorTest, PaintsWhatTheScreenShows) {
  fillTheScreen();
  Composition composition(server.display(), wholeScreen);
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U);
}

TEST_F(CompositorTest, PaintsAPartOfTheScreen) {
  fillTheScreen();
  constexpr xcb::PixelRect part{83, 41, 171, 133};
  Composition composition(server.display(), part);
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(client.screenshot(part)), 0U);
}

TEST_F(CompositorTest, PaintsTheBackgroundOfTheRootWindowEvenIfItsPropertyIsStale) {
  const xcb_pixmap_t stale = xcb_generate_id(client.connection());
  xcb_create_pixmap(client.connection(), 24, stale, client.root(), 10, 10);
  client.setNumbers(client.root(), "_XROOTPMAP_ID", "PIXMAP", {stale});
  client.sync();
  Composition composition(server.display(), {31, 17, 100, 90});
  composition.update();
  EXPECT_EQ(composition.picture().differences(client.screenshot({31, 17, 100, 90})), 0U);
  EXPECT_EQ(composition.picture().at(0, 0), client.screenshot({31, 17, 1, 1}).at(0, 0));
}

TEST_F(CompositorTest, ANewWallpaperIsPaintedWhenItIsAnnounced) {
  fillTheScreen();
  Composition composition(server.display(), wholeScreen);
  composition.update();
  client.setBackgroundChecks(client.root(), 9, 0x998877, 0x112233);
  client.setNumbers(client.root(), "_XROOTPMAP_ID", "PIXMAP", {0});
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U);
}

TEST_F(CompositorTest, LeavesNoTraceOfTheWindowThatShowsTheWallpaper) {
  const auto before = client.children(client.root());
  Composition composition(server.display(), wholeScreen);
  composition.update();
  composition.catchUp();
  EXPECT_EQ(client.children(client.root()), before);
  EXPECT_FALSE(composition.update());
}

TEST_F(CompositorTest, AWindowThatIsLeftOutShowsWhatIsBeneath) {
  fillTheScreen();
  const auto overlay = makeChecks({.frame = {40, 40, 300, 200}}, 0xff00ff, 0xffff00);
  const auto beneath = makeChecks({.frame = {0, 0, 1, 1}}, 0, 0);
  client.raise(overlay);
  client.sync();
  Composition composition(server.display(), wholeScreen, {overlay});
  EXPECT_TRUE(composition.update());
  // What is drawn beneath the window meanwhile counts as well.
  client.setFrame(beneath, {80, 80, 100, 100});
  client.setBackground(beneath, 0x0a0b0c);
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(screenWithout({overlay})), 0U);
}

TEST_F(CompositorTest, AWindowThatIsLeftOutMayDrawAndGrowWithoutBeingNoticed) {
  fillTheScreen();
  const auto overlay = makeChecks({.frame = {40, 40, 200, 150}}, 0xff00ff, 0xffff00);
  client.sync();
  Composition composition(server.display(), wholeScreen, {overlay});
  EXPECT_TRUE(composition.update());
  client.setBackground(overlay, 0x00ffff);
  client.setFrame(overlay, {20, 10, 300, 280});
  client.sync();
  EXPECT_FALSE(composition.update());
  // Where it uncovers other windows, the server itself draws them again.
  client.setFrame(overlay, {200, 10, 100, 100});
  client.lower(overlay);
  client.raise(overlay);
  client.sync();
  composition.update();
  EXPECT_EQ(composition.picture().differences(screenWithout({overlay})), 0U);
}

TEST_F(CompositorTest, AnotherWindowWithTheIdOfOneThatWasLeftOutIsPainted) {
  const auto overlay = client.createWindow({.frame = {40, 40, 300, 200}});
  client.sync();
  Composition composition(server.display(), wholeScreen, {overlay});
  composition.update();
  client.destroy(overlay);
  const std::array<std::uint32_t, 2> values{0x00aa00, 1};
  xcb_create_window(client.connection(), XCB_COPY_FROM_PARENT, overlay, client.root(), 50, 60, 70, 80, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT,
                    values.data());
  client.map(overlay);
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U);
  EXPECT_EQ(composition.picture().at(60, 70), 0x00aa00U);
}

TEST_F(CompositorTest, WindowsOfOurOwnClientsAreNeverPainted) {
  fillTheScreen();
  support::XClient own(server.display());
  const std::uint32_t base = xcb_get_setup(own.connection())->resource_id_base;
  const auto before = own.createWindow({.frame = {0, 0, 150, 150}, .color = 0xff00ff});
  own.sync();
  Composition composition(server.display(), wholeScreen, {}, {base});
  composition.update();
  const auto after = own.createWindow({.frame = {100, 100, 250, 150}, .color = 0xff00ff});
  own.fill(after, {10, 10, 20, 20}, 0xffffff);
  own.sync();
  EXPECT_FALSE(composition.update());
  own.unmap(before);
  own.unmap(after);
  own.sync();
  EXPECT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U);
}

TEST_F(CompositorTest, PaintsOnlyWhatWasDrawn) {
  const auto window = client.createWindow({.frame = {100, 50, 200, 200}, .border = 5});
  client.sync();
  Composition composition(server.display(), {10, 20, 390, 280});
  composition.update();
  client.fill(window, {30, 40, 2, 12}, 0xabcdef);
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_THAT(composition.painted(), ElementsAre(xcb::PixelRect{100 + 5 + 30 - 10, 50 + 5 + 40 - 20, 2, 12}));
}

TEST_F(CompositorTest, DrawingInAnUncoveredWindowTakesThreeRequests) {
  const auto window = client.createWindow({.frame = {100, 50, 200, 200}, .border = 5});
  client.createWindow({.frame = {320, 50, 50, 50}});
  client.sync();
  Composition composition(server.display(), {10, 20, 390, 280});
  composition.needNotTell();
  const auto requestsOfUpdate = [&] {
    const std::uint32_t before = xcb_no_operation(composition.connection().get()).sequence;
    composition.update();
    return xcb_no_operation(composition.connection().get()).sequence - before;
  };
  while (composition.update()) {
  }
  const std::uint32_t whenNothingChanged = requestsOfUpdate();
  client.fill(window, {30, 40, 2, 12}, 0xabcdef);
  client.sync();
  EXPECT_EQ(requestsOfUpdate() - whenNothingChanged, 3U);
  EXPECT_EQ(composition.picture().differences(client.screenshot({10, 20, 390, 280})), 0U);
}

TEST_F(CompositorTest, WhatIsDrawnBeneathAnotherWindowDoesNotShowThere) {
  const auto window = client.createWindow({.frame = {100, 50, 200, 200}, .border = 5});
  client.createWindow({.frame = {150, 100, 200, 50}, .color = 0x223344});
  client.sync();
  Composition composition(server.display(), wholeScreen);
  composition.needNotTell();
  while (composition.update()) {
  }
  client.fill(window, {0, 0, 200, 200}, 0xabcdef);
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U);
}

TEST_F(CompositorTest, NothingIsPaintedWhileNothingChanges) {
  fillTheScreen();
  Composition composition(server.display(), wholeScreen);
  EXPECT_TRUE(composition.update());
  EXPECT_FALSE(composition.update());
}

TEST_F(CompositorTest, DrawingOutsideTheSourceIsNoChange) {
  const auto window = client.createWindow({.frame = {100, 100, 200, 100}});
  client.createWindow({.frame = {300, 0, 50, 50}});
  client.sync();
  Composition composition(server.display(), {0, 0, 150, 300});
  composition.update();
  client.fill(window, {50, 0, 100, 100}, 0xff0000);
  client.sync();
  EXPECT_FALSE(composition.update());
  client.fill(window, {49, 0, 100, 100}, 0x00ff00);
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_THAT(composition.painted(), ElementsAre(xcb::PixelRect{149, 100, 1, 100}));
  EXPECT_EQ(composition.picture().differences(client.screenshot({0, 0, 150, 300})), 0U);
}

TEST_F(CompositorTest, DrawingBeneathAnOpaqueWindowIsNoChangeButIsNotForgotten) {
  const auto hidden = client.createWindow({.frame = {100, 100, 50, 50}});
  const auto cover = client.createWindow({.frame = {90, 90, 100, 100}, .color = 0x333333});
  client.sync();
  Composition composition(server.display(), wholeScreen);
  composition.update();
  client.fill(hidden, {0, 0, 50, 50}, 0xff0000);
  client.sync();
  EXPECT_FALSE(composition.update());
  client.move(cover, 120, 90);
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U);
  client.fill(hidden, {0, 0, 50, 50}, 0x00ff00);
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U);
}

TEST_F(CompositorTest, AfterEachOfManyRandomChangesTheScreenIsReproduced) {
  Composition composition(server.display(), wholeScreen);
  Composition other(server.display(), wholeScreen);
  other.needNotTell();
  scene::WindowStorm storm(client, 4711);
  for (int change = 0; change < 700; ++change) {
    storm.change();
    client.sync();
    composition.update();
    other.update();
    const Picture screen = client.screenshot(wholeScreen);
    ASSERT_EQ(composition.picture().differences(screen), 0U) << "after change " << change;
    ASSERT_EQ(other.picture().differences(screen), 0U) << "after change " << change;
  }
}

TEST_F(CompositorTest, PaintingTheDamageGivesTheSameAsPaintingEverything) {
  const support::CompositingManager manager(server.display());
  const auto overlay = client.createWindow({.frame = {50, 50, 200, 150}, .color = 0xff00ff});
  client.sync();
  constexpr xcb::PixelRect part{20, 30, 300, 200};
  Composition composition(server.display(), part, {overlay});
  composition.needNotTell();
  scene::WindowStorm storm(client, 815);
  for (int change = 0; change < 600; ++change) {
    storm.change();
    client.sync();
    composition.update();
    if (change % 6 != 0) continue;
    Composition anew(server.display(), part, {overlay});
    anew.update();
    ASSERT_EQ(composition.picture().differences(anew.picture()), 0U) << "after change " << change;
  }
}

TEST_F(CompositorTest, ChangesDuringPaintingAreCaughtUpWith) {
  for (unsigned round = 0; round < 6; ++round) {
    Composition composition(server.display(), wholeScreen);
    if (round % 2 == 0) composition.needNotTell();
    std::atomic<bool> isEnough = false;
    std::thread other([&] {
      scene::WindowStorm storm(client, 99 + round);
      while (!isEnough) {
        storm.change();
        xcb_flush(client.connection());
      }
      client.sync();
    });
    for (int frame = 0; frame < 60; ++frame) composition.update(500);
    isEnough = true;
    other.join();
    composition.update();
    ASSERT_EQ(composition.picture().differences(client.screenshot(wholeScreen)), 0U) << "round " << round;
  }
}

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
